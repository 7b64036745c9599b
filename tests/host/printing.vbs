' Ds_Printer, Ds_PrintJobs and Ds_PrintJob from a late-bound host, against the test
' prefix's own print spooler. vx_printer_fixture.exe registers two drivers there (the
' prefix's PostScript driver files): one under a name of our own, one under the fourth
' of the fixed names AddXpPrint tries first. Every printer added here is named
' "Vx Test ..."; the fixture deletes them and the drivers before the checks (should a run
' have stopped midway) and after them, however they went. The spooler lists no jobs
' here: the jobs' contents, the 127-job cap and the dates are unit-tested.
Const kOwnDriver = "Vx Test Driver"
Const kFixedDriver = "HP 2500C Series"
Const kFixedNames = "|IBM 2390 PS/1|hp photosmart 7600 series|AGFA-AccuSet v52.3|HP 2500C Series"
Const kImageWriter = "microsoft office document image writer driver"
Const kTestDrivers = """Vx Test Driver"" ""HP 2500C Series"""

Dim sh, fixtureExe, savedDefault
Set sh = CreateObject("WScript.Shell")
fixtureExe = """" & Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_printer_fixture.exe"" "

' Deletes the printers whose names begin with prefix ("" none), then the drivers.
Function Cleanup(prefix, drivers)
    Cleanup = sh.Run(fixtureExe & "cleanup """ & prefix & """ " & drivers, 0, True)
End Function

Function Listed(name)
    Dim n
    Listed = False
    For Each n In CreateObject("Vx_Main.Ds_Printer").EnumPrintersConst
        If n = name Then Listed = True
    Next
End Function

' The names a list holds from position first to last, each behind a "|".
Function Names(list, first, last)
    Dim i
    Names = ""
    For i = first To last
        Names = Names & "|" & list.Item(i).ValueA
    Next
End Function

Sub PrinterChecks()
    Dim prn, list, n, dev
    Set prn = CreateObject("Vx_Main.Ds_Printer")

    Section "the driver list"
    Set list = CreateObject("Vx_Main.Ds_ListCollection")
    CheckEqual "the number of names appended", prn.EnumPrintServerDrivers(list), 7
    CheckEqual "the fixed names, the installed ones (a fixed name again), the image writer", Names(list, 1, 7), _
        kFixedNames & "|" & kFixedDriver & "|" & kOwnDriver & "|" & kImageWriter
    CheckEqual "the 64-bit environment lists them too", prn.EnumPrintServerDrivers(list, "", "Windows x64"), 7
    Set list = CreateObject("Vx_Main.Ds_ListCollection")
    CheckEqual "an unknown environment: fixed names and image writer", prn.EnumPrintServerDrivers(list, , "Nowhere"), 5
    CheckEqual "in order", Names(list, 1, 5), kFixedNames & "|" & kImageWriter
    On Error Resume Next
    Set list = Nothing
    n = prn.EnumPrintServerDrivers(list)
    CheckError "a list that is Nothing", Err.Number, 91
    Err.Clear
    n = 42
    n = prn.EnumPrintServerDrivers(n)
    CheckError "a list that is no object", Err.Number, 424
    Err.Clear
    On Error GoTo 0

    Section "adding printers"
    Check "AddXpPrint without a driver", prn.AddXpPrint("Vx Test Fixed") <> 0
    Check "the printer is listed", Listed("Vx Test Fixed")
    prn.DefaultPrint = "Vx Test Fixed"
    CheckEqual "made the default, it reads back", prn.DefaultPrint, "Vx Test Fixed"
    Set dev = prn.GetPrinter
    CheckEqual "GetPrinter: name, the first fixed driver installed, the default port", _
        dev.DeviceName & "|" & dev.DriverName & "|" & dev.Port, "Vx Test Fixed|" & kFixedDriver & "|LPT1:"
    Check "AddXpPrint with a driver and a port", prn.AddXpPrint("Vx Test Named", kOwnDriver, "", "FILE:") <> 0
    prn.DefaultPrint = "Vx Test Named"
    CheckEqual "GetPrinter finds them", prn.GetPrinter.DriverName & "|" & prn.GetPrinter.Port, kOwnDriver & "|FILE:"
    CheckEqual "the object keeps what it found", dev.DeviceName, "Vx Test Fixed"
    prn.DefaultPrint = "No Such Printer"
    CheckEqual "an unknown default changes nothing", prn.DefaultPrint, "Vx Test Named"
    CheckEqual "a driver that is not installed adds nothing", prn.AddXpPrint("Vx Test None", "No Such Driver"), 0
    Check "and lists nothing", Not Listed("Vx Test None")
    CheckEqual "EnumPrintersConst: an array of the two", UBound(prn.EnumPrintersConst), 1

    Section "jobs of a real printer"
    CheckEqual "the queue is empty", prn.EnumJobPrint("Vx Test Named").Count, 0
    CheckEqual "RefreshJobList counts no jobs", prn.RefreshJobList("Vx Test Named"), 0
    CheckEqual "an unknown printer: an empty list", prn.EnumJobPrint("No Such Printer").Count, 0
    CheckEqual "and 0", prn.RefreshJobList("No Such Printer"), 0

    Section "deleting"
    CheckEqual "DeletePrintXP gives 1 when it deleted", prn.DeletePrintXP("Vx Test Named"), 1
    Check "the printer is gone", Not Listed("Vx Test Named")
    CheckEqual "again: 0", prn.DeletePrintXP("Vx Test Named"), 0

    Section "without the fixed driver, AddXpPrint falls through to the installed one"
    Cleanup "", """" & kFixedDriver & """"
    Set prn = CreateObject("Vx_Main.Ds_Printer")
    Check "AddXpPrint succeeds", prn.AddXpPrint("Vx Test Fallback") <> 0
    prn.DefaultPrint = "Vx Test Fallback"
    CheckEqual "with the installed driver", prn.GetPrinter.DriverName, kOwnDriver

    Section "bad input adds and deletes nothing"
    CheckEqual "an empty name", prn.AddXpPrint(""), 0
    CheckEqual "a name holding a NUL", prn.AddXpPrint("Vx Test Fallback" & Chr(0) & "x"), 0
    CheckEqual "deleting an empty name", prn.DeletePrintXP(""), 0
    CheckEqual "deleting a name holding a NUL", prn.DeletePrintXP("Vx Test Fallback" & Chr(0) & "x"), 0
    On Error Resume Next
    n = prn.AddXpPrint(Array("Vx Test Array"))
    CheckError "an array for a name", Err.Number, 13
    Err.Clear
    n = prn.DeletePrintXP(Null)
    CheckError "Null for a name", Err.Number, 13
    Err.Clear
    On Error GoTo 0
    CheckEqual "the printers are those the checks left", UBound(prn.EnumPrintersConst), 1
End Sub

Sub OtherChecks()
    Dim prn, address, jobs, job, name
    Set prn = CreateObject("Vx_Main.Ds_Printer")

    Section "StringFromPointer with addresses that are not readable memory"
    ' (the unit tests sweep every address a Long names, and read real text)
    For Each address In Array(0, 1, 4095, 4096, 65535)
        CheckEqual "address " & address, prn.StringFromPointer(address, 100), ""
    Next
    CheckEqual "a length of 0 reads nothing", prn.StringFromPointer(0, 0) & prn.StringFromPointer(0, -5), ""
    On Error Resume Next
    address = "somewhere"
    CheckEqual "an address that is no number", prn.StringFromPointer(address, 10), ""
    CheckError "is error 13", Err.Number, 13
    Err.Clear
    On Error GoTo 0

    Section "Ds_PrintJobs and Ds_PrintJob"
    Set jobs = prn.EnumJobPrint("No Such Printer")
    Set job = jobs.Add
    jobs.Add
    Check "Add appends an empty job and gives it", jobs.Count = 2 And jobs.Item(1) Is job
    CheckEqual "its texts start empty", job.sStatus & job.UserName & job.Document & job.Datatype & _
        job.CreateDate & job.PrinterName & job.MachineName, ""
    CheckEqual "its numbers at 0", job.JobId & job.Status & job.Priority & job.Position & job.TotalPages & _
        job.PagesPrinted, "000000"
    job.sStatus = "Printing": job.UserName = "sara": job.Document = "a.txt": job.Datatype = "RAW"
    job.CreateDate = "2006/8/3": job.PrinterName = "P": job.MachineName = "\\HOST"
    job.JobId = 7: job.Status = 16: job.Priority = 1: job.Position = 2: job.TotalPages = 30: job.PagesPrinted = 12
    CheckEqual "each field keeps what was written, and the list shares the job", _
        jobs.Item(1).sStatus & "," & job.UserName & "," & job.Document & "," & job.Datatype & "," & _
        job.CreateDate & "," & job.PrinterName & "," & job.MachineName & "," & job.JobId & "," & job.Status & "," & _
        job.Priority & "," & job.Position & "," & job.TotalPages & "," & jobs.Item(1).PagesPrinted, _
        "Printing,sara,a.txt,RAW,2006/8/3,P,\\HOST,7,16,1,2,30,12"
    On Error Resume Next
    job.JobId = "seven"
    CheckError "a number that is no number", Err.Number, 13
    Err.Clear
    job.TotalPages = 3000000000
    CheckError "a number beyond a Long", Err.Number, 6
    Err.Clear
    CheckEqual "and they changed nothing", job.JobId & "," & job.TotalPages, "7,30"
    Set job = jobs.Item(3)
    CheckError "a position beyond Count", Err.Number, 9
    Err.Clear
    Set job = jobs.Item("a.txt")
    CheckError "jobs have no keys", Err.Number, 5
    Err.Clear
    For Each name In Array("Vx_Main.Ds_PrintJobs", "Vx_Main.Ds_PrintJob", "Vx_Main.Ds_PrinterDevice")
        Set job = CreateObject(name)
        CheckError name & " cannot be created", Err.Number, 429
        Err.Clear
    Next
    On Error GoTo 0
    jobs.Remove 1
    CheckEqual "Remove: the second job moves up", jobs.Count & jobs.Item(1).Document, "1"
    jobs.Clear
    CheckEqual "Clear", jobs.Count, 0
End Sub

' ---- the run ----
savedDefault = CreateObject("Vx_Main.Ds_Printer").DefaultPrint
Cleanup "Vx Test", kTestDrivers
CheckEqual "the fixture registers the two drivers", sh.Run(fixtureExe & "add-driver """ & kOwnDriver & """", 0, True) _
    + sh.Run(fixtureExe & "add-driver """ & kFixedDriver & """", 0, True), 0
On Error Resume Next
PrinterChecks
If Err.Number <> 0 Then Fail "the printer checks", "stopped by error " & Err.Number & ": " & Err.Description
Err.Clear
On Error GoTo 0
Section "after the checks"
CheckEqual "the fixture removes the printers and drivers", Cleanup("Vx Test", kTestDrivers), 0
Check "no test printer is left", Not Listed("Vx Test Fixed") And Not Listed("Vx Test Fallback")
If savedDefault <> "" Then
    CreateObject("Vx_Main.Ds_Printer").DefaultPrint = savedDefault
ElseIf UBound(CreateObject("Vx_Main.Ds_Printer").EnumPrintersConst) = -1 Then
    CheckEqual "no printer: no default printer", CreateObject("Vx_Main.Ds_Printer").DefaultPrint, ""
    Check "and GetPrinter gives Nothing", CreateObject("Vx_Main.Ds_Printer").GetPrinter Is Nothing
End If
OtherChecks

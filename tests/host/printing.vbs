' Ds_Printer, Ds_PrintJobs and Ds_PrintJob from a late-bound host, against the test
' prefix's own print spooler. vx_printer_fixture.exe registers two drivers there (with
' the prefix's PostScript driver files): one under a name of our own, one under the
' fourth of the fixed names that AddXpPrint tries first. Every printer this script adds
' is named "Vx Test ..."; the fixture deletes them and the drivers at the start (should a
' run before have stopped midway) and at the end, however the checks went.
' The spooler lists no jobs here, so the jobs' contents, the 127-job cap and the dates
' are checked against a stand-in spooler in the unit tests.
Const kPrefix = "Vx Test"
Const kOwnDriver = "Vx Test Driver"
Const kFixedDriver = "HP 2500C Series"
Const kImageWriter = "microsoft office document image writer driver"

Dim sh, fixtureExe, savedDefault
Set sh = CreateObject("WScript.Shell")
fixtureExe = """" & Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_printer_fixture.exe"""

Function Fixture(args)
    Fixture = sh.Run(fixtureExe & " " & args, 0, True)
End Function

Sub RemoveTestPrinters(drivers)
    Dim rc
    rc = Fixture("cleanup """ & kPrefix & """ " & drivers)
    If rc <> 0 Then Fail "cleanup", "the fixture could not remove everything (exit code " & rc & ")"
End Sub

Function Listed(name)
    Dim n
    Listed = False
    For Each n In CreateObject("Vx_Main.Ds_Printer").EnumPrintersConst
        If n = name Then Listed = True
    Next
End Function

' The names a driver list holds from position first to last, joined by "|".
Function Names(list, first, last)
    Dim i
    Names = ""
    For i = first To last
        Names = Names & "|" & list.Item(i).ValueA
    Next
End Function

Sub PrinterChecks()
    Dim prn, list, n, r, dev, arr

    Section "the driver list"
    Set prn = CreateObject("Vx_Main.Ds_Printer")
    Set list = CreateObject("Vx_Main.Ds_ListCollection")
    n = prn.EnumPrintServerDrivers(list)
    CheckEqual "the result is the number of names appended", n, list.Count
    CheckEqual "the four fixed names come first, in order", Names(list, 1, 4), _
        "|IBM 2390 PS/1|hp photosmart 7600 series|AGFA-AccuSet v52.3|HP 2500C Series"
    CheckEqual "then the installed drivers, in the spooler's order (a fixed name installed comes again)", _
        Names(list, 5, 6), "|" & kFixedDriver & "|" & kOwnDriver
    CheckEqual "the document image writer last", list.Item(list.Count).ValueA, kImageWriter
    CheckEqual "nothing else", list.Count, 7
    Set list = CreateObject("Vx_Main.Ds_ListCollection")
    CheckEqual "the 64-bit environment lists the same drivers", prn.EnumPrintServerDrivers(list, "", "Windows x64"), 7
    Set list = CreateObject("Vx_Main.Ds_ListCollection")
    CheckEqual "an unknown environment: the fixed names and the image writer", _
        prn.EnumPrintServerDrivers(list, , "No Such Environment"), 5
    CheckEqual "appended in order", Names(list, 1, list.Count), _
        "|IBM 2390 PS/1|hp photosmart 7600 series|AGFA-AccuSet v52.3|HP 2500C Series|" & kImageWriter
    Set list = Nothing
    On Error Resume Next
    n = prn.EnumPrintServerDrivers(list)
    CheckError "a list that is Nothing", Err.Number, 91
    Err.Clear
    n = 42
    r = prn.EnumPrintServerDrivers(n)
    CheckError "a list that is no object", Err.Number, 424
    Err.Clear
    On Error GoTo 0

    Section "adding a printer through the driver list"
    r = prn.AddXpPrint("Vx Test Fixed")
    Check "AddXpPrint without a driver succeeds", r <> 0
    Check "the printer is listed", Listed("Vx Test Fixed")
    prn.DefaultPrint = "Vx Test Fixed"
    CheckEqual "made the default, it reads back", prn.DefaultPrint, "Vx Test Fixed"
    Set dev = prn.GetPrinter
    CheckEqual "GetPrinter: its name", dev.DeviceName, "Vx Test Fixed"
    CheckEqual "its driver: the first fixed name that is installed", dev.DriverName, kFixedDriver
    CheckEqual "its port: the default", dev.Port, "LPT1:"

    Section "adding a printer with a named driver and port"
    r = prn.AddXpPrint("Vx Test Named", kOwnDriver, "", "FILE:")
    Check "AddXpPrint succeeds", r <> 0
    prn.DefaultPrint = "Vx Test Named"
    Set dev = prn.GetPrinter
    CheckEqual "its driver", dev.DriverName, kOwnDriver
    CheckEqual "its port", dev.Port, "FILE:"
    CheckEqual "GetPrinter keeps what it found", dev.DeviceName, "Vx Test Named"
    prn.DefaultPrint = "No Such Printer"
    CheckEqual "an unknown default changes nothing", prn.DefaultPrint, "Vx Test Named"
    CheckEqual "a driver that is not installed adds nothing", prn.AddXpPrint("Vx Test Nothing", "No Such Driver"), 0
    Check "and lists nothing", Not Listed("Vx Test Nothing")
    arr = prn.EnumPrintersConst
    Check "EnumPrintersConst is an array", IsArray(arr)
    CheckEqual "holding the two printers", UBound(arr) - LBound(arr) + 1, 2

    Section "jobs of a real printer"
    CheckEqual "the queue is empty", prn.EnumJobPrint("Vx Test Named").Count, 0
    CheckEqual "RefreshJobList counts no jobs", prn.RefreshJobList("Vx Test Named"), 0
    CheckEqual "an unknown printer: an empty list", prn.EnumJobPrint("No Such Printer").Count, 0
    CheckEqual "and 0", prn.RefreshJobList("No Such Printer"), 0

    Section "deleting"
    CheckEqual "DeletePrintXP gives 1 when it deleted", prn.DeletePrintXP("Vx Test Named"), 1
    Check "the printer is gone", Not Listed("Vx Test Named")
    CheckEqual "again: 0", prn.DeletePrintXP("Vx Test Named"), 0
    CheckEqual "an empty name deletes nothing", prn.DeletePrintXP(""), 0
    Check "the other printer is still there", Listed("Vx Test Fixed")

    Section "without the fixed driver, AddXpPrint falls through to the installed one"
    Fixture "cleanup """" """ & kFixedDriver & """"
    Set prn = CreateObject("Vx_Main.Ds_Printer")
    r = prn.AddXpPrint("Vx Test Fallback")
    Check "AddXpPrint succeeds", r <> 0
    prn.DefaultPrint = "Vx Test Fallback"
    CheckEqual "with the installed driver", prn.GetPrinter.DriverName, kOwnDriver

    Section "bad input adds and deletes nothing"
    CheckEqual "an empty printer name", prn.AddXpPrint(""), 0
    CheckEqual "a name holding a NUL", prn.AddXpPrint("Vx Test Fallback" & Chr(0) & "x"), 0
    CheckEqual "deleting a name that holds a NUL", prn.DeletePrintXP("Vx Test Fallback" & Chr(0) & "x"), 0
    Check "the printer it begins with is still there", Listed("Vx Test Fallback")
    On Error Resume Next
    r = prn.AddXpPrint(Array("Vx Test Array"))
    CheckError "an array for a name", Err.Number, 13
    Err.Clear
    r = prn.DeletePrintXP(Null)
    CheckError "Null for a name", Err.Number, 13
    Err.Clear
    On Error GoTo 0
    arr = prn.EnumPrintersConst
    CheckEqual "the printers are those the checks added", UBound(arr), 1
End Sub

Sub MemoryChecks()
    Dim prn, address, most
    Set prn = CreateObject("Vx_Main.Ds_Printer")
    Section "StringFromPointer with addresses that are not readable memory"
    most = 100
    For Each address In Array(0, 1, 4095, 4096, 65535)
        CheckEqual "address " & address, prn.StringFromPointer(address, most), ""
    Next
    ' Elsewhere a number may name memory, or not: the call reads only what may be read.
    On Error Resume Next
    For Each address In Array(&H7FFFFFFF, &H80000000, -1, -4096, &H10000, &H7FFE0000, &H12345678)
        CheckEqual "address " & address & " gives text", VarType(prn.StringFromPointer(address, most)), 8
        CheckError "and no error", Err.Number, 0
        Err.Clear
    Next
    On Error GoTo 0
    address = 0
    most = 0
    CheckEqual "a length of 0", prn.StringFromPointer(address, most), ""
    most = -5
    CheckEqual "a negative length", prn.StringFromPointer(address, most), ""
    On Error Resume Next
    address = "somewhere"
    CheckEqual "an address that is no number", prn.StringFromPointer(address, 10), ""
    CheckError "is error 13", Err.Number, 13
    Err.Clear
    On Error GoTo 0
End Sub

Sub JobListChecks()
    Dim prn, jobs, job, r
    Set prn = CreateObject("Vx_Main.Ds_Printer")
    Set jobs = prn.EnumJobPrint("No Such Printer")

    Section "Ds_PrintJobs"
    Set job = jobs.Add
    CheckEqual "Add appends an empty job", jobs.Count, 1
    Check "Item(1) is that job", jobs.Item(1) Is job
    job.Document = "report.txt"
    CheckEqual "jobs are shared, not copied", jobs.Item(1).Document, "report.txt"
    jobs.Add
    CheckEqual "two jobs", jobs.Count, 2
    On Error Resume Next
    Set job = jobs.Item(3)
    CheckError "a position beyond Count", Err.Number, 9
    Err.Clear
    Set job = jobs.Item(0)
    CheckError "position 0", Err.Number, 9
    Err.Clear
    Set job = jobs.Item("report.txt")
    CheckError "jobs have no keys", Err.Number, 5
    Err.Clear
    On Error GoTo 0
    jobs.Remove 1
    CheckEqual "Remove", jobs.Count, 1
    CheckEqual "the second job moved up", jobs.Item(1).Document, ""
    jobs.Clear
    CheckEqual "Clear", jobs.Count, 0

    Section "Ds_PrintJob"
    Set job = jobs.Add
    CheckEqual "texts start empty", job.sStatus & job.UserName & job.Document & job.Datatype & job.CreateDate & _
        job.PrinterName & job.MachineName, ""
    CheckEqual "numbers start at 0", Abs(job.JobId) + Abs(job.Status) + Abs(job.Priority) + Abs(job.Position) + _
        Abs(job.TotalPages) + Abs(job.PagesPrinted), 0
    job.sStatus = "Printing": job.UserName = "sara": job.Document = "a.txt": job.Datatype = "RAW"
    job.CreateDate = "2006/8/3": job.PrinterName = "P": job.MachineName = "\\HOST"
    job.JobId = 7: job.Status = 16: job.Priority = 1: job.Position = 2: job.TotalPages = 30: job.PagesPrinted = 12
    CheckEqual "the texts keep what was written", job.sStatus & "," & job.UserName & "," & job.Document & "," & _
        job.Datatype & "," & job.CreateDate & "," & job.PrinterName & "," & job.MachineName, _
        "Printing,sara,a.txt,RAW,2006/8/3,P,\\HOST"
    CheckEqual "the numbers too", job.JobId & "," & job.Status & "," & job.Priority & "," & job.Position & "," & _
        job.TotalPages & "," & job.PagesPrinted, "7,16,1,2,30,12"
    CheckEqual "numbers are Longs", VarType(job.JobId), 3
    On Error Resume Next
    job.JobId = "seven"
    CheckError "a number that is no number", Err.Number, 13
    Err.Clear
    job.TotalPages = 3000000000
    CheckError "a number beyond a Long", Err.Number, 6
    Err.Clear
    On Error GoTo 0
    CheckEqual "failed assignments changed nothing", job.JobId & "," & job.TotalPages, "7,30"

    Section "the dependent classes cannot be created"
    On Error Resume Next
    For Each r In Array("Vx_Main.Ds_PrintJobs", "Vx_Main.Ds_PrintJob", "Vx_Main.Ds_PrinterDevice")
        Set job = CreateObject(r)
        CheckError r, Err.Number, 429
        Err.Clear
    Next
    On Error GoTo 0
End Sub

' ---- the run ----
savedDefault = CreateObject("Vx_Main.Ds_Printer").DefaultPrint
RemoveTestPrinters """" & kOwnDriver & """ """ & kFixedDriver & """"
CheckEqual "the fixture registers the two drivers", _
    Fixture("add-driver """ & kOwnDriver & """") + Fixture("add-driver """ & kFixedDriver & """"), 0

On Error Resume Next
PrinterChecks
If Err.Number <> 0 Then Fail "the printer checks", "stopped by error " & Err.Number & ": " & Err.Description
Err.Clear
On Error GoTo 0

RemoveTestPrinters """" & kOwnDriver & """ """ & kFixedDriver & """"
Section "after the cleanup"
Check "no test printer is left", Not Listed("Vx Test Fixed") And Not Listed("Vx Test Fallback")
If savedDefault <> "" Then
    CreateObject("Vx_Main.Ds_Printer").DefaultPrint = savedDefault
ElseIf UBound(CreateObject("Vx_Main.Ds_Printer").EnumPrintersConst) = -1 Then
    CheckEqual "no printer: no default printer", CreateObject("Vx_Main.Ds_Printer").DefaultPrint, ""
    Check "and GetPrinter gives Nothing", CreateObject("Vx_Main.Ds_Printer").GetPrinter Is Nothing
End If

MemoryChecks
JobListChecks

' Printers: Ds_Printer lists printers, reads and sets the default printer, and reads
' print queues as Ds_PrintJobs lists of Ds_PrintJob. This example only reads.
' Run: cscript //nologo printers.vbs
Option Explicit

Dim printers, names, name, device, jobs, job, i, drivers

Set printers = CreateObject("Vx_Main.Ds_Printer")

' The local printers, as an array from 0 (UBound -1 when there are none).
names = printers.EnumPrintersConst
WScript.Echo "Printers: " & (UBound(names) + 1)
For Each name In names
    WScript.Echo "  " & name
Next

' The default printer: GetPrinter gives Nothing when there is none (as on a machine or
' a Wine prefix without printers); on Windows it shows, for example,
' "Microsoft Print to PDF on PORTPROMPT:, driver Microsoft Print To PDF".
Set device = printers.GetPrinter
If device Is Nothing Then
    WScript.Echo "Default printer: none"
Else
    WScript.Echo "Default printer: " & device.DeviceName & " on " & device.Port & ", driver " & device.DriverName
End If

' Each printer's queue: the number of jobs, then the jobs themselves.
For Each name In names
    WScript.Echo "  " & name & ": " & printers.RefreshJobList(name) & " jobs"
    Set jobs = printers.EnumJobPrint(name)
    For i = 1 To jobs.Count
        Set job = jobs.Item(i)
        WScript.Echo "    job " & job.JobId & ", " & job.TotalPages & " pages, " & job.Status
    Next
Next

' A printer that is not there is no error: 0 jobs and an empty list.
WScript.Echo "Unknown printer: " & printers.RefreshJobList("No such printer") & " jobs, " & _
    printers.EnumJobPrint("No such printer").Count & " in the list"

' The drivers AddXpPrint tries for a new printer, appended to any list with an Add.
Set drivers = CreateObject("Vx_Main.Ds_ListCollection")
printers.EnumPrintServerDrivers drivers
WScript.Echo "Driver names: " & (drivers.Count > 0) & ", first " & drivers.Item(1).ValueA

' Setting the default (printers.DefaultPrint = name), adding (AddXpPrint) and deleting
' (DeletePrintXP) change the machine: not run here.
WScript.Echo "Done."

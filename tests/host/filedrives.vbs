' ---- the test ----
' Drives of known kinds from a late-bound host: the test prefix has R: (removable), S:
' (CD-ROM) and T: (fixed, labelled "Vx Label", serial number C0FFEE), which the fixture
' test-drives.sh gives it before this test and takes back after it.
Dim fs, lst, i, kinds, names, x, drive, label, tries, before, free, used

Set fs = CreateObject("Vx_Main.Ds_FileSystem")

Section "drive lists"
Check "GetFileSys lists every drive", fs.GetFileSys("", lst, 2)
Set kinds = CreateObject("Scripting.Dictionary")
Set names = CreateObject("Scripting.Dictionary")
On Error Resume Next
i = 0
Do
    Set drive = lst.ItemDrive(i)
    If Err.Number <> 0 Then Exit Do
    kinds(drive.DriveLetter) = lst.ItemDriveType(i)
    x = lst.ItemDriveName(i)
    If Err.Number = 0 Then names(drive.DriveLetter) = x Else names(drive.DriveLetter) = "error " & Err.Number
    Err.Clear
    i = i + 1
Loop
CheckError "the list ends with error 9", Err.Number, 9
Err.Clear
On Error GoTo 0
Check "the three test drives are there", kinds.Exists("R") And kinds.Exists("S") And kinds.Exists("T")
CheckEqual "a removable drive", kinds("R"), "Removable"
CheckEqual "a CD-ROM drive", kinds("S"), "Cd-Rom"
CheckEqual "a fixed drive", kinds("T"), "Drive Fixed"
CheckEqual "a removable drive has no name", VarType(names("R")), 0
CheckEqual "a labelled drive: its label", names("T"), "Vx Label"

Section "drive information"
Set drive = fs.GoDrive("T:\")
CheckEqual "RootDrive", drive.RootDrive, "T:\"
CheckEqual "the label", drive.Caption, "Vx Label"
CheckEqual "the file system", drive.FileSystem, "NTFS"
CheckEqual "the serial number, no leading zeros", drive.SerialInfo, "C0FFEE"
CheckEqual "the runtime's serial number agrees", gFso.GetDrive("T:").SerialNumber, &HC0FFEE
' Wine reads a label once, when the drive is defined, from the file .windows-label in its
' root, and writes a new one there: the file shows what the system was told.
drive.Caption = "Other Label"
Set label = gFso.OpenTextFile("T:\.windows-label", 1)
CheckEqual "a new label", Trim(Replace(Replace(label.ReadAll, vbLf, ""), vbCr, "")), "Other Label"
label.Close
drive.Caption = "Vx Label"
CheckEqual "no label: a local disk", fs.GoDrive("R:\").Caption, "Local Disk"
CheckEqual "sizes are Currency", VarType(drive.TotalBytes), 6
CheckEqual "the exact byte count", CDbl(drive.TotalBytes), CDbl(gFso.GetDrive("T:").TotalSize)
' The free space is the disk's under the test drive, which other programs write to as
' this runs: a reading is compared with one of the same moment, a moment when the
' readings before and after it agree.
For tries = 1 To 100
    before = gFso.GetDrive("T:").FreeSpace
    free = drive.TotalFreeBytes
    If gFso.GetDrive("T:").FreeSpace = before Then Exit For
Next
CheckEqual "the free bytes", CDbl(free), CDbl(before)
For tries = 1 To 100
    before = drive.TotalFreeBytes
    used = drive.TotalBytesTotalFreeBytes
    If drive.TotalFreeBytes = before Then Exit For
Next
CheckEqual "used: total minus free", used, drive.TotalBytes - before
Check "free to the caller", drive.BytesFreeToCalller >= 0 And drive.BytesFreeToCalller <= drive.TotalBytes
If drive.TotalBytes > 2147483647 Then
    Check "above 2 GB, to the byte", drive.TotalBytes = Fix(drive.TotalBytes)
End If
Set drive = fs.GoDrive("S:\")
CheckEqual "a CD-ROM drive's file system", drive.FileSystem, "CDFS"

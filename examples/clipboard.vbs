' The clipboard and members by name: Ds_Clipboard reads and writes the clipboard's text,
' rich text, pictures and file lists, describes its formats and watches it for a text;
' Ds_SetValueObject reads, lets, sets and calls a member of any object whose name is
' known only as text. This example replaces what the clipboard holds.
' Run: cscript //nologo clipboard.vbs
Option Explicit

' A control on a form, as a program would hand one over: a name, a caption, a count and
' a font.
Class TextBox
    Public Name
    Public Caption
    Public Count
    Public Font
End Class

Dim clip, finder, formats, fmt, files, k, seen, byName, box, dict, value, answer

Set clip = CreateObject("Vx_Main.Ds_Clipboard")
Set finder = CreateObject("Vx_Main.Ds_EnumChid")

' Text: letting empties the clipboard and puts the text (in the system's ANSI code page).
clip.ClipboardText = "Hello from the clipboard"
WScript.Echo "Text: " & clip.ClipboardText

' The formats there now, each "name" & vbTab & "what it holds", from index 0. The system
' adds the other text forms itself.
formats = Array()                             ' EnumClipboard needs a variable holding an array
WScript.Echo "Formats: " & clip.EnumClipboard(formats)
For Each fmt In formats
    WScript.Echo "  " & Left(fmt, InStr(fmt, vbTab) - 1)
Next
' A guess from the number of formats: 1 text, 2 a bitmap, 15 files, 0 none.
WScript.Echo "Kind by count: " & clip.NowTypeClipboard

' Rich text is a format of its own: the plain text is gone.
clip.ClipboardRTF = "{\rtf1\ansi Hello in {\b bold}}"
WScript.Echo "Rich text: " & clip.ClipboardRTF
WScript.Echo "Plain text now: """ & clip.ClipboardText & """"

' Pictures and file lists: Nothing and False when the clipboard has none. (A copy of
' files in Explorer puts a file list; ClipboardGetFiles then fills the array with paths.)
WScript.Echo "No picture: " & (clip.ClipboardPicture Is Nothing)
files = Array()
WScript.Echo "Files: " & clip.ClipboardGetFiles(files)

' A watch: GoTimeClipboard empties the clipboard and checks it every 50 ms for a text
' containing "invoice" (in any case). Its timer fires only while the script yields, so
' the script waits in WaitDoEvents, counting its turns.
clip.GoTimeClipboard "invoice", , 50
WScript.Echo "Seen at once: " & clip.ResultClipboardText
clip.ClipboardText = "Copied: INVOICE 2024-117"   ' as another program would copy it
seen = False
For k = 1 To 500
    seen = clip.ResultClipboardText
    If seen Then Exit For
    finder.WaitDoEvents , 20
Next
WScript.Echo "Seen after yielding: " & seen
clip.DeactiveTimer                              ' releasing the object stops it too

' ---- Members by name ----
Set byName = CreateObject("Vx_Main.Ds_SetValueObject")
Set box = New TextBox
box.Name = "txtCustomer"
box.Caption = "Sara"
box.Count = CInt(5)
Set box.Font = CreateObject("StdFont")

' The call kind is the runtime's: 2 reads, 4 lets, 8 sets, 1 calls. The answer is a word:
' "Get" (a copy of a value), "GSet" (an object itself), "Let", "Set" or "Error".
answer = byName.GetValueData(box, "Caption", 2, , value)
WScript.Echo "Read Caption: " & answer & ", " & value
answer = byName.GetValueData(box, "Font", 2, , value)
WScript.Echo "Read Font: " & answer & ", the control's own: " & (value Is box.Font)

' A let converts the value to the type the member holds now: "1" into a Boolean behind a
' dotted path, "7.5" into an Integer (halves round to even).
WScript.Echo "Let Font.Bold = ""1"": " & byName.GetValueData(box, "Font.Bold", 4, "1") & ", now " & box.Font.Bold
WScript.Echo "Let Count = ""7.5"": " & byName.GetValueData(box, "Count", 4, "7.5") & ", now " & box.Count & " (" & TypeName(box.Count) & ")"

' Arguments as an array: for a call, the arguments; for a let or set, indexes then value.
Set dict = CreateObject("Scripting.Dictionary")
WScript.Echo "Call Add: " & byName.GetValueData(dict, "Add", 1, Array("city", "Shiraz"))
WScript.Echo "Let Item(""city""): " & byName.GetValueData(dict, "Item", 4, Array("city", "Tabriz")) & ", now " & dict("city")
WScript.Echo "Set Font: " & byName.GetValueData(box, "Font", 8, CreateObject("StdFont")) & ", bold: " & box.Font.Bold

' Failures never raise: Err.Number stays 0, and the word says "Error". ShowErrorCallByName
' then shows the control's name, the member, the error number and its description in a
' box that waits for OK, for a person to read (not shown here).
answer = byName.GetValueData(box, "Colour", 2, , value)
WScript.Echo "Read Colour: " & answer & ", Err.Number " & Err.Number
WScript.Echo "Call kind 3: " & byName.GetValueData(box, "Caption", 3)
WScript.Echo "Done."

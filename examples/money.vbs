' Amounts in Persian words: Ds_AlphaMoney, for amounts from 0 to 999,999,999,999.
' (A console without Persian letters shows them as question marks; write the text to a
' Unicode file, a form or a document to see it.) Run: cscript //nologo money.vbs
Option Explicit

Dim money, text, amount

Set money = CreateObject("Vx_Main.Ds_AlphaMoney")

For Each amount In Array(0, 7, 2500, 1250000, 3000000000)
    text = money.ConvertAlphaMoney(amount)
    WScript.Echo amount & ": " & text & " (" & Len(text) & " characters)"
Next

' Amounts out of range give a fixed message; negative amounts give "".
WScript.Echo "Too large gives a message: " & (Len(money.ConvertAlphaMoney(1000000000000)) > 0)
WScript.Echo "Negative gives """": " & (money.ConvertAlphaMoney(-5) = "")

' The scale words and the joining word can be replaced, for example to write a
' cheque in another style. They are used as given, blanks included.
money.AlphaThousand = " thousand"
money.AlphaAnd = " and "
text = money.ConvertAlphaMoney(2500)
WScript.Echo "With other words, ""and"" appears: " & (InStr(text, " thousand and ") > 0)
WScript.Echo "Done."

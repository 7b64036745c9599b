' Ds_AlphaMoney from a late-bound host: the word tables, every range rule of the amount
' with its gaps, and the properties assigned from literals and from variables.
Dim money, other, i, A, TH, MI, MD, s, r

Set money = CreateObject("Vx_Main.Ds_AlphaMoney")
A = T("money.and")
TH = T("money.thousand")
MI = T("money.million")
MD = T("money.milliard")

' The words of 999, written out from the tables.
Function Nines()
    Nines = T("money.hundreds9") & A & T("money.tens9") & A & T("money.ones9")
End Function

Section "defaults"
CheckEqual "AlphaAnd", money.AlphaAnd, A
CheckEqual "AlphaThousand has no trailing blank", money.AlphaThousand, TH
CheckEqual "AlphaMillion", money.AlphaMillion, MI
CheckEqual "AlphaMilliard", money.AlphaMilliard, MD

Section "word tables"
CheckEqual "0", money.ConvertAlphaMoney(0), T("money.zero")
For i = 1 To 19
    CheckEqual CStr(i), money.ConvertAlphaMoney(i), T("money.ones" & i)
Next
For i = 2 To 9
    CheckEqual CStr(i * 10), money.ConvertAlphaMoney(i * 10), T("money.tens" & i)
Next
For i = 1 To 9
    CheckEqual CStr(i * 100), money.ConvertAlphaMoney(i * 100), T("money.hundreds" & i)
Next

Section "up to 999"
CheckEqual "21", money.ConvertAlphaMoney(21), T("money.say21")
CheckEqual "105", money.ConvertAlphaMoney(105), T("money.say105")
CheckEqual "50 keeps its leading blank", Left(money.ConvertAlphaMoney(50), 1), " "
CheckEqual "110", money.ConvertAlphaMoney(110), T("money.hundreds1") & A & T("money.ones10")
CheckEqual "120", money.ConvertAlphaMoney(120), T("money.hundreds1") & A & T("money.tens2")
CheckEqual "999", money.ConvertAlphaMoney(999), Nines()
CheckEqual "2.5 rounds half to even", money.ConvertAlphaMoney(2.5), T("money.ones2")
CheckEqual "998.5 too", money.ConvertAlphaMoney(998.5), T("money.hundreds9") & A & T("money.tens9") & A & T("money.ones8")

Section "thousands"
CheckEqual "1000", money.ConvertAlphaMoney(1000), T("money.ones1") & TH
CheckEqual "2500", money.ConvertAlphaMoney(2500), T("money.say2500")
' A fraction is rounded for the remainder but truncated for the thousands.
CheckEqual "1000.5", money.ConvertAlphaMoney(1000.5), T("money.ones1") & TH
CheckEqual "1001.5", money.ConvertAlphaMoney(1001.5), T("money.ones1") & TH & A & T("money.ones2")
CheckEqual "1999.5", money.ConvertAlphaMoney(1999.5), T("money.ones1") & TH
CheckEqual "1999.4", money.ConvertAlphaMoney(1999.4), T("money.ones1") & TH & A & Nines()
CheckEqual "999999", money.ConvertAlphaMoney(999999), Nines() & TH & A & Nines()

Section "millions"
CheckEqual "1000000", money.ConvertAlphaMoney(1000000), T("money.say1000000")
CheckEqual "2500000", money.ConvertAlphaMoney(2500000), T("money.say2500000")
CheckEqual "1000001", money.ConvertAlphaMoney(1000001), T("money.ones1") & MI & A & T("money.ones1")
CheckEqual "999999999", money.ConvertAlphaMoney(999999999), Nines() & MI & A & Nines() & TH & A & Nines()
' The groups are cut from the text of the amount: "7.5" rounds to 8; a front part that
' is no three-digit group writes nothing.
CheckEqual "1234567.5", money.ConvertAlphaMoney(1234567.5), T("money.hundreds1") & A & T("money.tens2") & A & _
    T("money.ones3") & MI & A & T("money.hundreds4") & A & T("money.tens5") & A & T("money.ones6") & TH & A & T("money.ones8")
CheckEqual "999999998.75", money.ConvertAlphaMoney(999999998.75), ""

Section "milliards"
CheckEqual "1000000000", money.ConvertAlphaMoney(1000000000), T("money.say1000000000")
CheckEqual "2003000000", money.ConvertAlphaMoney(2003000000), T("money.ones2") & MD & A & T("money.ones3") & MI
CheckEqual "2003004000", money.ConvertAlphaMoney(2003004000), T("money.ones2") & MD & A & T("money.ones3") & MI & A & T("money.ones4") & TH
CheckEqual "2003004005", money.ConvertAlphaMoney(2003004005), _
    T("money.ones2") & MD & A & T("money.ones3") & MI & A & T("money.ones4") & TH & A & T("money.ones5")
CheckEqual "999999999999", money.ConvertAlphaMoney(999999999999), _
    Nines() & MD & A & Nines() & MI & A & Nines() & TH & A & Nines()
For Each i In Array(1000000001, 1000005000, 1000005001, 1002000001, 1000000999, 5000040000)
    CheckEqual i & " is a gap", money.ConvertAlphaMoney(i), ""
Next

Section "out of range"
CheckEqual "1000000000000", money.ConvertAlphaMoney(1000000000000), T("money.outofrange")
CheckEqual "1E+20", money.ConvertAlphaMoney(1E+20), T("money.outofrange")
For Each i In Array(-1000000000000, -5, -0.5, 0.5, 0.999, 999.5, 999.9, 999999.5, 999999999.5)
    CheckEqual i & " is outside every range", money.ConvertAlphaMoney(i), ""
Next
CheckEqual "999999999999.5", money.ConvertAlphaMoney(999999999999.5), T("money.outofrange")
CheckEqual "a numeric text", money.ConvertAlphaMoney("21"), T("money.say21")
On Error Resume Next
r = money.ConvertAlphaMoney("lots")
CheckError "a text that is no number", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "properties"
money.AlphaAnd = " and "
CheckEqual "a literal", money.AlphaAnd, " and "
s = " thousand"
money.AlphaThousand = s
CheckEqual "a variable", money.AlphaThousand, " thousand"
CheckEqual "the variable is unchanged", s, " thousand"
money.AlphaMillion = " million "
money.AlphaMilliard = " milliard "
CheckEqual "the words are used", money.ConvertAlphaMoney(2003004005), _
    T("money.ones2") & " milliard  and " & T("money.ones3") & " million  and " & T("money.ones4") & " thousand and " & T("money.ones5")
money.AlphaAnd = ""
CheckEqual "an empty AlphaAnd joins with nothing", money.ConvertAlphaMoney(21), T("money.tens2") & T("money.ones1")
Set other = CreateObject("Vx_Main.Ds_AlphaMoney")
CheckEqual "each object has its own words", other.ConvertAlphaMoney(21), T("money.say21")

' ---- the test ----
' The members of Ds_MyVaribleFunction on words, characters and durations, from a
' late-bound host; Persian texts come from data/words.txt.
Dim f, w, n, r, k, i, persian

Set f = CreateObject("Vx_Main.Ds_MyVaribleFunction")

' An array's elements joined by "|".
Function J(list)
    Dim x
    J = ""
    For x = LBound(list) To UBound(list)
        J = J & "|" & list(x)
    Next
    J = Mid(J, 2)
End Function

Section "splitting into words"
CheckEqual "Latin words, punctuation dropped", J(f.SplitParagraphWord("Hello, world!  (It's) well-known; 3.14, 1,000 and 1385/05/12.")), _
    "Hello|world|It's|well-known|3.14|1,000|and|1385/05/12"
CheckEqual "line breaks and tabs separate", J(f.SplitParagraphWord("one" & vbCrLf & "two" & vbTab & "three")), "one|two|three"
CheckEqual "joiners at the ends of a word are not part of it", J(f.SplitParagraphWord("-a- 'b' 1. 2/ .5")), "a|b|1|2|5"
w = f.SplitParagraphWord("")
CheckEqual "no words: an empty array", UBound(w), -1
CheckEqual "punctuation only", UBound(f.SplitParagraphWord(" ,.; -- ")), -1
persian = f.SplitParagraphWord(T("words.sentence"))
CheckEqual "a Persian sentence has six words", UBound(persian), 6
CheckEqual "the zero-width non-joiner keeps a word together", persian(0), T("words.w1")
CheckEqual "the Persian comma separates", persian(2), T("words.w3")
CheckEqual "so do guillemets", persian(4), T("words.w5")
CheckEqual "and the Persian question mark", persian(6), T("words.w6")
CheckEqual "Persian digits with separators are one word", J(f.SplitParagraphWord(T("words.date"))), T("words.date")
CheckEqual "Latin and Persian side by side", UBound(f.SplitParagraphWord(T("words.mixed"))), 1

Section "counting words"
CheckEqual "whole words, case ignored", f.CountFindWord("The cat, the hat. Then THE end", "the"), 3
CheckEqual "anywhere", f.CountFindWord("The cat, the hat. Then THE end", "the", False), 4
CheckEqual "case counting", f.CountFindWord("The cat, the hat. Then THE end", "the", False, True), 1
CheckEqual "without overlaps", f.CountFindWord("aaaa", "aa", False), 2
CheckEqual "a phrase", f.CountFindWord("new york, New York!", "new york"), 2
CheckEqual "an empty word", f.CountFindWord("abc", ""), 0
CheckEqual "a Persian word, not inside a joined one", f.CountFindWord(T("words.books"), T("words.book")), 1
CheckEqual "inside it too when asked", f.CountFindWord(T("words.books"), T("words.book"), False), 3
CheckEqual "the most repeated word", f.GetReapetWord("b a B c A b", n), "b"
CheckEqual "how often", n, 3
CheckEqual "ties: the one that came first", f.GetReapetWord("x y y x", n) & n, "x2"
CheckEqual "case counting", f.GetReapetWord("b a B c A b a", n, True) & n, "b2"
CheckEqual "no words", f.GetReapetWord(" ... ", n) & n, "0"
CheckEqual "Persian", f.GetReapetWord(T("words.sentence"), n) & n, T("words.w2") & "2"

Section "find and paste"
CheckEqual "every occurrence", f.GoFindPaste("Cat cat catalog", "cat", "dog", False, False, n), "dog dog dogalog"
CheckEqual "counted", n, 3
CheckEqual "whole words", f.GoFindPaste("Cat cat catalog", "cat", "dog", True, False, n) & n, "dog dog catalog2"
CheckEqual "case counting", f.GoFindPaste("Cat cat catalog", "cat", "dog", True, True, n) & n, "Cat dog catalog1"
CheckEqual "left to right without overlaps", f.GoFindPaste("aaa", "aa", "b"), "ba"
CheckEqual "nothing to find", f.GoFindPaste("abc", "", "x", False, False, n) & n, "abc0"
CheckEqual "a Persian word, whole", f.GoFindPaste(T("words.books"), T("words.book"), T("words.pen"), True, False, n), _
    T("words.booksPen")
CheckEqual "once", n, 1

Section "English letters and digits"
Check "English", f.IsENMN("Room 12")
Check "not Persian", Not f.IsENMN(T("words.sentence"))
Check "not with Persian digits", Not f.IsENMN(T("words.mixed"))
Check "a blank is allowed by default", f.IsENMN("a b")
Check "unless not", Not f.IsENMN("a b", "")
Check "other characters when allowed", f.IsENMN("a_b-1", "_-")
Check "not empty text", Not f.IsENMN("")
CheckEqual "Persian digits to English", f.GoIsENMN(T("words.date")), "1385/05/12"
CheckEqual "Arabic-Indic digits and separator", f.GoIsENMN(T("words.arabicNumber")), "3.14"
CheckEqual "English digits to Persian", f.GoIsENMN("0123456789", False), T("words.persianDigits")
CheckEqual "and back", f.GoIsENMN(f.GoIsENMN("Room 12", False)), "Room 12"
Check "then English", f.IsENMN(f.GoIsENMN(T("words.mixed")))

Section "legal characters"
Check "a file name", f.IsLegalCharacter("report 2006.txt")
Check "a question mark", Not f.IsLegalCharacter("report?.txt")
Check "a path separator", Not f.IsLegalCharacter("a\b")
Check "a control character", Not f.IsLegalCharacter("a" & Chr(9) & "b")
Check "Persian text and its punctuation are legal", f.IsLegalCharacter(T("words.sentence") & ".txt")
Check "an own set", Not f.IsLegalCharacter("a-b", "-")
Check "which replaces the file-name set", f.IsLegalCharacter("a?b", "-")
Check "empty text", f.IsLegalCharacter("")

Section "key codes"
k = Asc("5")
Check "a digit passes", f.CheckKeyCode(k) And k = Asc("5")
k = Asc("x")
Check "a letter does not", Not f.CheckKeyCode(k)
CheckEqual "and becomes 0", k, 0
k = 8
Check "Backspace passes", f.CheckKeyCode(k) And k = 8
k = 8
Check "unless editing keys are refused", Not f.CheckKeyCode(k, "0123456789", False) And k = 0
k = Asc(".")
Check "an own set", f.CheckKeyCode(k, "0123456789.") And k = 46
k = 0
Check "no key", f.CheckKeyCode(k)

Section "durations"
CheckEqual "texts, a number of seconds", f.GetTotalTime(Array("1:30", "0:45:30", 90)), "2:17:00"
CheckEqual "beyond a day", f.GetTotalTime(Array("20:00", "10:30:15")), "30:30:15"
CheckEqual "without seconds", f.GetTotalTime(Array("20:00", "10:30:59"), False), "30:30"
CheckEqual "one value", f.GetTotalTime("0:0:61"), "0:01:01"
CheckEqual "negative", f.GetTotalTime(Array("1:00", "-1:30")), "-0:30:00"
CheckEqual "dates", f.GetTotalTime(Array(TimeSerial(1, 15, 0), CDate("0:45:30"))), "2:00:30"
CheckEqual "Persian digits", f.GetTotalTime(Array(T("words.time"), " 0:30 ")), "2:00:00"
CheckEqual "empty values", f.GetTotalTime(Array(Empty, "", "0:05")), "0:05:00"
CheckEqual "nothing", f.GetTotalTime(Array()), "0:00:00"
On Error Resume Next
r = f.GetTotalTime(Array("1:30", "abc"))
CheckError "not a time", Err.Number, 13
Err.Clear
r = f.GetTotalTime("1:2:3:4")
CheckError "too many parts", Err.Number, 13
Err.Clear
r = f.GetTotalTime(Array("1:30", Null))
CheckError "Null", Err.Number, 94
Err.Clear
r = f.GetTotalTime(Array(CreateObject("Scripting.Dictionary")))
CheckError "an object", Err.Number, 13
Err.Clear
r = f.GetTotalTime(1E+300)
CheckError "beyond any sum", Err.Number, 6
Err.Clear

Section "texts that are not texts"
r = f.SplitParagraphWord(Null)
CheckError "Null", Err.Number, 13
Err.Clear
r = f.CountFindWord(Array("a"), "a")
CheckError "an array", Err.Number, 13
Err.Clear
r = f.IsLegalCharacter("a", Null)
CheckError "Null as the illegal characters", Err.Number, 94
Err.Clear
On Error GoTo 0

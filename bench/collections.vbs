' Ds_ListCollection against the scripting runtime's Dictionary: adding records with keys,
' then reading each one back by its key, from a script.
Function TimeList(n)
    Dim l, i, x, t
    t = Timer
    Set l = CreateObject("Vx_Main.Ds_ListCollection")
    For i = 1 To n
        l.Add i, "k" & i
    Next
    For i = 1 To n
        Set x = l.Item("k" & i)
    Next
    TimeList = Since(t)
End Function

Function TimeDictionary(n)
    Dim d, i, x, t
    t = Timer
    Set d = CreateObject("Scripting.Dictionary")
    For i = 1 To n
        d.Add "k" & i, i
    Next
    For i = 1 To n
        x = d.Item("k" & i)
    Next
    TimeDictionary = Since(t)
End Function

' The same loops with the collection's work left out: each key is built as above and a
' call that does nothing (Count) stands in for Add and Item. What is left is the script
' engine's own cost of the loops, the key texts and the calls, a floor no collection
' called this way can go below.
Function TimeFloor(n)
    Dim l, i, x, k, t
    Set l = CreateObject("Vx_Main.Ds_ListCollection")
    t = Timer
    For i = 1 To n
        k = "k" & i
        x = l.Count
    Next
    For i = 1 To n
        k = "k" & i
        x = l.Count
    Next
    TimeFloor = Since(t)
End Function

' The best of two runs each, taking turns, so that a change in the machine's load meets
' both; the ten-fold run is made once (it takes ten times as long).
Function Least(a, b)
    Least = a
    If b < a Then Least = b
End Function

Dim small, theirs, large
small = TimeList(100000)
theirs = TimeDictionary(100000)
small = Least(small, TimeList(100000))
theirs = Least(theirs, TimeDictionary(100000))
Report "Ds_ListCollection Add and keyed Item, 100,000 records / Dictionary", small, theirs, 0.7
Report "  the same loops with no collection work (the floor) / Dictionary", Least(TimeFloor(100000), TimeFloor(100000)), theirs, "-"
large = TimeList(1000000)
Report "Ds_ListCollection 1,000,000 records / 100,000 records", large, small, 11

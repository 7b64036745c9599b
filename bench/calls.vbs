' The cost of a trivial late-bound call from a script: Ds_ListCollection.Count against
' Dictionary.Count, each on a list of ten items.
Const Calls = 500000
Dim l, d, i, x, t, ours, theirs
Set l = CreateObject("Vx_Main.Ds_ListCollection")
Set d = CreateObject("Scripting.Dictionary")
For i = 1 To 10
    l.Add i, "k" & i
    d.Add "k" & i, i
Next
t = Timer
For i = 1 To Calls
    x = l.Count
Next
ours = Since(t)
t = Timer
For i = 1 To Calls
    x = d.Count
Next
theirs = Since(t)
Report "Ds_ListCollection.Count / Dictionary.Count, 500,000 calls from a script", ours, theirs, 1.1

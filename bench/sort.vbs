' ---- the benchmark ----
' Ds_MyVaribleFunction.SetSort against a quicksort written in the script, each sorting its
' own copy of the same 100,000 elements: numbers, then texts.
Const Count = 100000

Sub QuickSort(a, low, high)
    Dim i, j, pivot, x
    i = low
    j = high
    pivot = a((low + high) \ 2)
    Do While i <= j
        Do While a(i) < pivot
            i = i + 1
        Loop
        Do While a(j) > pivot
            j = j - 1
        Loop
        If i <= j Then
            x = a(i): a(i) = a(j): a(j) = x
            i = i + 1
            j = j - 1
        End If
    Loop
    If low < j Then QuickSort a, low, j
    If i < high Then QuickSort a, i, high
End Sub

' Whether each element is not below the one before it.
Function Sorted(a)
    Dim k
    Sorted = True
    For k = 1 To UBound(a)
        If a(k) < a(k - 1) Then Sorted = False: Exit Function
    Next
End Function

Sub Measure(label, data)
    Dim f, mine, theirs, t, measured, baseline
    Set f = CreateObject("Vx_Main.Ds_MyVaribleFunction")
    mine = data
    theirs = data
    t = Timer
    f.SetSort mine
    measured = Since(t)
    t = Timer
    QuickSort theirs, 0, UBound(theirs)
    baseline = Since(t)
    If Not Sorted(mine) Or Not Sorted(theirs) Then WScript.Echo "not sorted: " & label
    Report label, measured, baseline, 0.05
End Sub

Dim numbers, texts, i
ReDim numbers(Count - 1)
ReDim texts(Count - 1)
Randomize 17
For i = 0 To Count - 1
    numbers(i) = Int(Rnd * 1000000)
    texts(i) = "item " & Int(Rnd * 1000000)
Next
Measure "SetSort, 100,000 numbers / a quicksort in the script", numbers
Measure "SetSort, 100,000 texts / a quicksort in the script", texts

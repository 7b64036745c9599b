' Ds_Network from a late-bound host, against the system's own network services: the
' error channel and its event, connectivity, names and addresses, ping, look-ups,
' servers, services and adapters. The event reaches the script through the stand-in
' hook VxTest.EventHook (registered for this test), which connects a handler as a
' script host does for WScript.CreateObject(progid, prefix).
Dim net, hook, handler, sh, s, r, a, b, c, lst, rep, arr, i, parts, ok, wmi, row, n, svc, found, computer

Class AlertHandler
    Public Calls
    Public LastCode
    Public LastText
    Sub AlertError(code, text)
        Calls = Calls + 1
        LastCode = code
        LastText = text
        code = "changed by the handler"
    End Sub
End Class

Set sh = CreateObject("WScript.Shell")
Set net = CreateObject("Vx_Main.Ds_Network")
Set handler = New AlertHandler
handler.Calls = 0
Set hook = CreateObject("VxTest.EventHook")
hook.Connect net, handler

Section "fields"
Set r = CreateObject("Vx_Main.Ds_Network")
CheckEqual "CallProcAddress starts at 0", r.CallProcAddress, 0
CheckEqual "ShowErrorNetwork starts False", r.ShowErrorNetwork, False
CheckEqual "NetCodeError starts Empty", r.NetCodeError, Empty
CheckEqual "NetErrorDesration starts empty", r.NetErrorDesration, ""
CheckEqual "ConvertOf returns 0", r.ConvertOf(1234), 0
CheckEqual "and stores the callback", r.CallProcAddress, 1234
r.NetCodeError = 42
CheckEqual "NetCodeError takes a value", r.NetCodeError, 42
Set r.NetCodeError = net
Check "and an object", IsObject(r.NetCodeError)
r.NetErrorDesration = "text"
CheckEqual "NetErrorDesration takes text", r.NetErrorDesration, "text"

Section "the error channel and its event"
CheckEqual "the event interface the object names", hook.EventName, "__Ds_Network"
' Wine's server browser is absent, so asking for the servers fails: a real error.
s = net.GetServerList
CheckEqual "a failed server list is empty", s, ""
CheckEqual "the code is stored as text", VarType(net.NetCodeError), 8
Check "the code is a number", IsNumeric(net.NetCodeError) And net.NetCodeError <> "0"
CheckEqual "the text ends with the code", net.NetErrorDesration, _
    "The list of servers could not be read. (" & net.NetCodeError & ")"
CheckEqual "AlertError ran once", handler.Calls, 1
CheckEqual "with the code", handler.LastCode, net.NetCodeError
CheckEqual "and the text", handler.LastText, net.NetErrorDesration
Check "a handler that changes its arguments changes nothing stored", net.NetCodeError <> "changed by the handler"
' Numbers that are no callback's address are never called: the member returns as usual.
For Each n In Array(4096, 12345678, &H7FFFFFFF, -5, 1)
    net.CallProcAddress = n
    s = net.GetServerList
Next
CheckEqual "each error still raised the event", handler.Calls, 6
net.CallProcAddress = 0
hook.Disconnect
s = net.GetServerList
CheckEqual "a disconnected handler hears nothing", handler.Calls, 6
' A script host that supports event prefixes connects without the hook.
Dim prefixCalls
prefixCalls = 0
Sub prefixed_AlertError(code, text)
    prefixCalls = prefixCalls + 1
End Sub
On Error Resume Next
Set r = WScript.CreateObject("Vx_Main.Ds_Network", "prefixed_")
ok = (Err.Number = 0)
Err.Clear
On Error GoTo 0
If ok Then
    s = r.GetServerList
    CheckEqual "WScript.CreateObject with a prefix", prefixCalls, 1
End If

Section "connectivity"
For Each s In Array("IsNetConnectOnline", "IsNetConnectionAlive", "IsNetConnectionLAN", "IsNetConnectionRAS", _
                    "IsNetConnectionAOL", "IsNetConnectViaLAN", "IsNetConnectViaModem", "IsNetConnectViaProxy", _
                    "IsNetRASInstalled")
    Select Case s
        Case "IsNetConnectOnline": r = net.IsNetConnectOnline
        Case "IsNetConnectionAlive": r = net.IsNetConnectionAlive
        Case "IsNetConnectionLAN": r = net.IsNetConnectionLAN
        Case "IsNetConnectionRAS": r = net.IsNetConnectionRAS
        Case "IsNetConnectionAOL": r = net.IsNetConnectionAOL
        Case "IsNetConnectViaLAN": r = net.IsNetConnectViaLAN
        Case "IsNetConnectViaModem": r = net.IsNetConnectViaModem
        Case "IsNetConnectViaProxy": r = net.IsNetConnectViaProxy
        Case "IsNetRASInstalled": r = net.IsNetRASInstalled
    End Select
    CheckEqual s & " is a Boolean", VarType(r), 11
Next
s = net.GetNetConnectionType
If Not net.IsNetConnectionAlive Then
    CheckEqual "no live connection", s, "The system has no connection or an error occurred"
ElseIf net.IsNetConnectionLAN Then
    CheckEqual "a LAN", s, "The system has one or more active LAN cards"
ElseIf net.IsNetConnectionRAS Then
    CheckEqual "dial-up", s, "The system has one or more active RAS connections"
End If
s = net.GetNetConnectString
If Not net.IsNetConnectOnline Then
    CheckEqual "offline", s, "Not connected to the internet now."
Else
    CheckEqual "the LAN sentence when connected through a LAN", _
        InStr(s, "The local system connects to the Internet via a LAN") > 0, net.IsNetConnectViaLAN
    r = "Remote Access Services are installed on this system."
    CheckEqual "the RAS sentence when RAS is installed", Right(s, Len(r)) = r, net.IsNetRASInstalled
End If

Section "names and addresses"
computer = net.GetMyComputerName
CheckEqual "the computer's name", UCase(computer), UCase(Replace(sh.ExpandEnvironmentStrings("%COMPUTERNAME%"), Chr(0), ""))
s = net.GetIPAll
Check "every address ends with CR LF", Len(s) > 2 And Right(s, 2) = vbCrLf
CheckEqual "the computer's name names this computer", net.GetIPAll(computer), s
parts = Split(s, vbCrLf)
ok = UBound(parts) >= 1
For i = 0 To UBound(parts) - 1
    ok = ok And parts(i) <> "" And InStr(parts(i), " ") = 0
Next
Check "one address a line, no empty line", ok
Set wmi = GetObject("winmgmts:\\.\root\cimv2")
On Error Resume Next
s = net.GetIPAll("vx-no-such-computer")
CheckEqual "an unreachable computer's error reaches the caller", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
CheckEqual "localhost", net.GetIPFromHostName("localhost"), "127.0.0.1"
CheckEqual "a dotted address is its own", net.GetIPFromHostName("127.0.0.1"), "127.0.0.1"
CheckEqual "empty means this computer", net.GetIPFromHostName(""), net.GetIPFromHostName(computer)
CheckEqual "a name that does not resolve", net.GetIPFromHostName("vx-no-such-host.invalid"), ""
' The system's ARP gives nothing here: the number -1, not text.
r = net.MacAddress("127.0.0.1")
CheckEqual "MacAddress without ARP: -1", r, -1
CheckEqual "an Integer", VarType(r), 2
CheckEqual "GetIPMain without ARP", net.GetIPMain, ""
CheckEqual "GetMacAddressMain without ARP", net.GetMacAddressMain, ""
r = net.IsDestinationReachableStr("127.0.0.1", a, b, c)
CheckEqual "the reachability test without speeds", r, False
CheckEqual "in speed", a, "0  In Speed bytes per second"
CheckEqual "out speed", b, "0  Out Speed bytes per second"
CheckEqual "the status text", c, "HowDestinationReachable : 127.0.0.1" & vbCrLf & vbCrLf & a & vbCrLf & vbCrLf & b
r = net.IsDestinationReachableStr("127.0.0.1")
CheckEqual "the texts are optional", r, False
CheckEqual "no account with a long SID: Empty", VarType(net.getSID), 0

Section "ping"
handler.Calls = 0
hook.Connect net, handler
r = net.GetPingIP("127.0.0.1", lst, 1000, 16, 64, 3, rep)
If sh.ExpandEnvironmentStrings("%VX_W32NS%") <> "%VX_W32NS%" Then
    ' The 32-bit lane's user namespace has no right to ICMP sockets: the system refuses
    ' the first echo, which is reported, and no further one is tried.
    CheckEqual "a refused echo", r, False
    CheckEqual "one record", UBound(lst), 0
    CheckEqual "its line", rep, "The echo could not be sent (5)." & vbCrLf
    CheckEqual "reported", net.NetErrorDesration, "The echo could not be sent. (5)"
    CheckEqual "through the event", handler.Calls, 1
    handler.Calls = 0
Else
    CheckEqual "three echoes answered", r, True
    CheckEqual "one record an echo", UBound(lst), 2
    parts = Split(rep, vbCrLf)
    CheckEqual "one line an echo, each ending in CR LF", UBound(parts), 3
    ok = True
    For i = 0 To 2
        ok = ok And Left(parts(i), 36) = "Reply from 127.0.0.1: bytes=16 time=" And InStr(parts(i), "ms TTL=") > 0
    Next
    Check "each line a reply", ok
    CheckEqual "by name, with the defaults", net.GetPingIP("localhost"), True
    CheckEqual "no error on the way", handler.Calls, 0
End If
r = net.GetPingIP("vx-no-such-host.invalid", lst, , , , , rep)
CheckEqual "an unresolvable host", r, False
CheckEqual "is reported", handler.Calls, 1
Check "with its name", InStr(net.NetErrorDesration, "The host vx-no-such-host.invalid could not be found. (") = 1
On Error Resume Next
For Each a In Array(Array(-1, 32, 128, 1), Array(60001, 32, 128, 1), Array(1000, -1, 128, 1), _
                    Array(1000, 65501, 128, 1), Array(1000, 32, 0, 1), Array(1000, 32, 256, 1), _
                    Array(1000, 32, 128, 0), Array(1000, 32, 128, 1001))
    Err.Clear
    r = net.GetPingIP("127.0.0.1", lst, a(0), a(1), a(2), a(3))
    CheckError "an argument out of range: " & a(0) & "," & a(1) & "," & a(2) & "," & a(3), Err.Number, 5
Next
Err.Clear
On Error GoTo 0

Section "look-ups"
arr = "untouched"
CheckEqual "the addresses of a name", net.GetIPListFromHostName("localhost", arr), "127.0.0.1" & vbCrLf
CheckEqual "as an array too", arr(0), "127.0.0.1"
arr = "untouched"
CheckEqual "no addresses", net.GetIPListFromHostName("vx-no-such-host.invalid", arr), ""
CheckEqual "leave the array alone", arr, "untouched"
CheckEqual "address to name", net.GetHostNameFromIP("127.0.0.1"), "localhost"
CheckEqual "not an address", net.GetHostNameFromIP("not an address"), ""

Section "servers"
arr = "untouched"
handler.Calls = 0
CheckEqual "no browser: no servers", net.GetServerList(1, "", arr), ""
CheckEqual "the list stays as it was", arr, "untouched"
CheckEqual "and the error is reported", handler.Calls, 1

Section "services"
Set svc = net.GetServiceList
Check "this computer has services", svc.Count > 0
found = False
ok = True
For i = 1 To svc.Count
    Set row = svc.Item(i)
    CheckEqual "keyed by name", row.sKey, row.ValueA
    If UCase(row.ValueA) = "RPCSS" Then found = (row.ValueC = "Running" And row.ValueD = 4)
    ok = ok And InStr("|Stopped|Start Pending|Stop Pending|Running|Continue Pending|Pause Pending|Paused|", "|" & row.ValueC & "|") > 0
Next
Check "the RPC service runs", found
Check "every state has its text", ok
CheckEqual "by key", svc.Item("rpcss").ValueA, "RpcSs"

Section "adapters"
s = net.GetAdapterReport
n = 0
For Each row In wmi.ExecQuery("Select * from Win32_NetworkAdapterConfiguration Where IPEnabled=TRUE")
    n = n + 1
    Check "the adapter's block", InStr(s, "Description : " & row.Description & vbCrLf & "MAC Address : " & row.MACAddress & vbCrLf) > 0
Next
CheckEqual "a block an adapter", UBound(Split(s, "Description : ")), n
For Each a In Split(net.GetIPAll, vbCrLf)
    If a <> "" Then Check "holds " & a, InStr(s, a) > 0
Next
handler.Calls = 0
CheckEqual "an unreachable computer's report", net.GetAdapterReport("vx-no-such-computer"), ""
CheckEqual "is reported", handler.Calls, 1

Section "bad input"
On Error Resume Next
r = net.GetIPFromHostName(Null)
CheckError "Null for a name", Err.Number, 13
Err.Clear
r = net.GetIPFromHostName(Array(1, 2))
CheckError "an array for a name", Err.Number, 13
Err.Clear
On Error GoTo 0
CheckEqual "a huge name resolves to nothing", net.GetIPFromHostName(String(100000, "a")), ""
CheckEqual "a name with a NUL", net.GetIPFromHostName("local" & Chr(0) & "host"), ""
CheckEqual "a huge address is no address", net.GetHostNameFromIP(String(100000, "1")), ""
hook.Disconnect

' Network and accounts: Ds_Network (names, addresses, ping, services; failures through
' an event) and Ds_MakeAccount (user accounts through the WinNT directory provider).
' Run: cscript //nologo network.vbs    (add /create to also create and delete an account)
Option Explicit

Dim net, acc, replies, report, services, groups, userName, status

' Created through WScript.CreateObject with a prefix, the event AlertError reaches the
' Sub net_AlertError below. A script host that cannot connect events (Wine's) refuses
' the prefix: then the object is created plainly, and the last failure is read from
' NetCodeError and NetErrorDesration instead.
On Error Resume Next
Set net = WScript.CreateObject("Vx_Main.Ds_Network", "net_")
If Err.Number <> 0 Then
    Err.Clear
    Set net = CreateObject("Vx_Main.Ds_Network")
    WScript.Echo "Events: not connected by this script host"
End If
On Error GoTo 0
Sub net_AlertError(code, text)
    WScript.Echo "  (network error " & code & ": " & text & ")"
End Sub

WScript.Echo "Computer name known: " & (Len(net.GetMyComputerName) > 0)
WScript.Echo "localhost is " & net.GetIPFromHostName("localhost")          ' 127.0.0.1
WScript.Echo "127.0.0.1 is " & net.GetHostNameFromIP("127.0.0.1")          ' localhost
WScript.Echo "Connection: " & net.GetNetConnectionType

' Ping: True when every echo was answered; the report has a line per echo. Where the
' system may not send echoes (no ICMP rights), the failure goes through the event.
If net.GetPingIP("127.0.0.1", replies, 1000, 32, 64, 2, report) Then
    WScript.Echo "Ping: " & Replace(report, vbCrLf, " / ")
Else
    WScript.Echo "Ping: no answer (" & net.NetCodeError & ": " & net.NetErrorDesration & ")"
End If

' Services as a Ds_ListCollection keyed by service name: ValueB the display name,
' ValueC the state.
Set services = net.GetServiceList
WScript.Echo "Services listed: " & (services.Count > 0)
If services.Count > 0 Then WScript.Echo "First: " & services.Item(1).ValueA & " is " & services.Item(1).ValueC

' Accounts. Without a directory provider (a Wine prefix has none) the calls raise the
' provider's error; on Windows this lists the current user's groups, such as "Users".
Set acc = CreateObject("Vx_Main.Ds_MakeAccount")
userName = CreateObject("WScript.Network").UserName
On Error Resume Next
Call acc.GroupsAccount(userName, ".", groups)
If Err.Number <> 0 Then
    WScript.Echo "Accounts: not available here (error " & Hex(Err.Number) & ")"
Else
    If IsArray(groups) Then WScript.Echo "Groups of " & userName & ": " & Join(groups, ", ") Else WScript.Echo "Groups of " & userName & ": none"
End If
Err.Clear
' Creating and deleting an account needs administrator rights: only on request.
If WScript.Arguments.Count > 0 Then
    If WScript.Arguments(0) = "/create" Then
        status = acc.CreateAccountName("vx_example", ".", "Pa55-word!", "Users,Group")
        WScript.Echo "CreateAccountName: " & status & " (-2 created, 0 existed, -1 access denied)"
        acc.DeleteAccount "vx_example", "."
        If Err.Number <> 0 Then WScript.Echo "DeleteAccount: error " & Hex(Err.Number)
    End If
End If
On Error GoTo 0
WScript.Echo "Done."

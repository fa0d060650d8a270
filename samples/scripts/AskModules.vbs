' Prints which files the modules of the catalog install and where, what has to be merged for a module and why,
' and which modules deliver a file: what "mmcat files", "mmcat deps" and "mmcat which" print.
'
'   cscript //nologo AskModules.vbs PATTERN KEY FILE
'
' The server and QmMergeSet.dll must be registered. Exits with 3 if the catalog does not have the module.

Option Explicit

Dim mergeSet, file, planned, deliverer
If WScript.Arguments.Count <> 3 Then WScript.Echo "usage: AskModules.vbs PATTERN KEY FILE": WScript.Quit 2
Set mergeSet = CreateObject("QmMMUpdater.MergeSet")
mergeSet.Load CreateObject("QmMMUpdater.MMCatalog")
If mergeSet.FindModules(WScript.Arguments(1)).Count = 0 Then
  WScript.Echo WScript.Arguments(1) & ": the catalog has no such module"
  WScript.Quit 3
End If
For Each file In mergeSet.FindFiles(WScript.Arguments(0))
  WScript.Echo file.Module.Key & ": " & file.Name & " in " & file.TargetPath
Next
For Each planned In mergeSet.Plan(WScript.Arguments(1)).Modules
  WScript.Echo "merge " & planned.Module.Key & " " & planned.Module.Version & " (" & planned.Reason & ")"
Next
For Each deliverer In mergeSet.FindDeliverers(WScript.Arguments(2))
  WScript.Echo deliverer.ModuleKey & ": " & deliverer.Copies & " x " & deliverer.FileName & " " & deliverer.Problem
Next

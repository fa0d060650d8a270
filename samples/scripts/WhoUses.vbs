' Lists the modules of the catalog that need a module.
'
'   cscript //nologo WhoUses.vbs ID
'
' The server must be registered. Exits with 0 if a module needs it, otherwise with 3.

Option Explicit

Dim module, dependency, exitCode
exitCode = 3
For Each module In CreateObject("QmMMUpdater.MMCatalog").MergeModules
  If module.ModuleID <> "" Then ' an unreadable file has no ID, and reading its tables fails
    For Each dependency In module.Dependencies
      If LCase(dependency.ModuleID) = LCase(WScript.Arguments(0)) Then
        WScript.Echo module.Key & " " & module.Version & " needs " & dependency.Key & " " & dependency.Version
        exitCode = 0
      End If
    Next
  End If
Next
WScript.Quit exitCode

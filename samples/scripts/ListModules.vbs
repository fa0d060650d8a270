' Lists the catalog of merge modules.
'
'   cscript //nologo ListModules.vbs
'
' The server must be registered. Exits with 4 if a module could not be read.

Option Explicit

Const InstallerProject = 1
Dim catalog, module, exitCode
Set catalog = CreateObject("QmMMUpdater.MMCatalogManager").GetCatalog(InstallerProject)
exitCode = 0
For Each module In catalog.MergeModules
  If IsReadable(module) Then
    WScript.Echo module.Key
    ShowField "Module ID", module.ModuleID
    ShowField "Language", module.Language
    ShowField "Version", module.Version
    ShowField "Display name", module.DisplayName
    ShowField "Package code", module.PackageCode
    ShowField "Path", module.Path
    ShowField "Folder", module.Origin
  Else
    exitCode = 4
  End If
Next
WScript.Quit exitCode

' A file that could not be read has no module ID. Reading one of its tables raises the reason.
Function IsReadable(module)
  Dim dialogs
  IsReadable = True
  If module.ModuleID = "" Then
    On Error Resume Next
    Set dialogs = module.Dialogs
    If Err.Number <> 0 Then
      WScript.Echo module.Path & ": 0x" & Hex(Err.Number) & " " & Err.Description
      IsReadable = False
    End If
  End If
End Function

Sub ShowField(name, value)
  WScript.Echo "  " & name & ": " & value
End Sub

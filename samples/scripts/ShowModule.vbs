' Shows merge modules: identity, summary texts and all collections.
'
'   cscript //nologo ShowModule.vbs FILE.msm...
'
' The server must be registered. Exits with 4 if a file could not be read.

Option Explicit

Dim module, i, exitCode
If WScript.Arguments.Count = 0 Then WScript.Echo "usage: ShowModule.vbs FILE.msm...": WScript.Quit 2
Set module = CreateObject("QmMMUpdater.MergeModule2")
exitCode = 0
For i = 0 To WScript.Arguments.Count - 1
  If OpenModule(WScript.Arguments(i)) Then
    ShowModule
  Else
    exitCode = 4
  End If
Next
WScript.Quit exitCode

Function OpenModule(path)
  On Error Resume Next
  module.Open path
  OpenModule = (Err.Number = 0)
  If Err.Number <> 0 Then
    WScript.Echo path & ": 0x" & Hex(Err.Number) & " " & Err.Description
  End If
End Function

Sub ShowModule()
  Dim item
  WScript.Echo module.Key
  ShowField "Display name", module.DisplayName
  ShowField "Module ID", module.ModuleID
  ShowField "Language", module.Language
  ShowField "Version", module.Version
  ShowField "Subject", module.Subject
  ShowField "Author", module.Author
  ShowField "Comments", module.Comments
  ShowField "Package code", module.PackageCode
  ShowField "Path", module.Path
  ShowField "Present", module.Present
  ShowField "Needs download", module.NeedsDownload
  ShowField "Local path", module.LocalPath
  If module.HasOrigin Then ShowField "Origin", module.Origin
  For Each item In module.Files
    ShowField "File", item.Key & " | " & item.FileName & " | " & item.FileSize & " bytes | " & _
      item.Version & " | " & item.Language & " | " & item.Sequence & " | in " & item.Directory
  Next
  For Each item In module.Dependencies
    ShowField "Needs", item.Key & " " & item.Version & " (" & item.ModuleID & ", language " & _
      item.Language & ")"
  Next
  For Each item In module.Exclusions
    ShowField "Excludes", item.Key & " from " & item.MinVersion & " to " & item.MaxVersion & _
      " (" & item.ModuleID & ", language " & item.Language & ")"
  Next
  For Each item In module.CustomActions
    ShowField "Custom action", item.Name
  Next
  For Each item In module.Dialogs
    ShowField "Dialog", item.Name
  Next
  For Each item In module.DownloadFiles
    ShowField "Download", item.Location & " | " & item.MediaLocation & " | " & _
      item.InternetLocation & " | " & item.FileSize & " bytes | " & item.CheckSum
  Next
End Sub

Sub ShowField(name, value)
  WScript.Echo "  " & name & ": " & value
End Sub

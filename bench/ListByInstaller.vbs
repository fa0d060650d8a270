' ListByInstaller.vbs FOLDER: milliseconds that it takes a script to list the modules of a folder with
' the same properties as ListModules.vbs, by the installer's own automation object.
Option Explicit

Dim installer, files, begun

begun = Timer
Set installer = CreateObject("WindowsInstaller.Installer")
Set files = CreateObject("Scripting.FileSystemObject").GetFolder(WScript.Arguments(0)).Files
List
WScript.Echo CStr(CLng((Timer - begun) * 1000000) / 1000)

Sub List
  Dim file, database, view, row, summary, text
  For Each file In files
    Set database = installer.OpenDatabase(file.Path, 0)
    Set view = database.OpenView("SELECT * FROM ModuleSignature")
    view.Execute
    Set row = view.Fetch
    text = row.StringData(1) & ":" & row.StringData(2)
    text = row.StringData(1)
    text = row.IntegerData(2)
    text = row.StringData(3)
    Set summary = database.SummaryInformation(0)
    text = summary.Property(4)
    text = summary.Property(6)
    text = summary.Property(9)
    text = summary.Property(3)
    ' The next database does not open while anything of this one is held.
    Set row = Nothing
    Set view = Nothing
    Set summary = Nothing
    Set database = Nothing
  Next
End Sub

' List reads the same properties as ListModules.vbs, of all modules of a folder, through the installer's
' own automation object.
Option Explicit

Sub List(folder)
  Dim installer, file, database, view, row, summary, text
  Set installer = CreateObject("WindowsInstaller.Installer")
  For Each file In CreateObject("Scripting.FileSystemObject").GetFolder(folder).Files
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
    ' The next database cannot be opened while objects of this one are held.
    Set row = Nothing
    Set view = Nothing
    Set summary = Nothing
    Set database = Nothing
  Next
End Sub

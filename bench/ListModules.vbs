' ListModules.vbs: milliseconds that it takes a script to list all modules of the catalog with eight
' properties each, the first time and again.
Option Explicit

Dim catalog, begun, first, again, i, repetitions

begun = Timer
Set catalog = CreateObject("QmMMUpdater.MMCatalog")
List
first = Timer - begun

' The clock of a script advances 64 times a second.
repetitions = 60000 \ catalog.MergeModules.Count
begun = Timer
For i = 1 To repetitions
  List
Next
again = (Timer - begun) / repetitions

WScript.Echo CStr(CLng(first * 1000000) / 1000) & " " & CStr(CLng(again * 1000000) / 1000)

Sub List
  Dim module, text
  For Each module In catalog.MergeModules
    text = module.Key
    text = module.ModuleID
    text = module.Language
    text = module.Version
    text = module.Author
    text = module.Comments
    text = module.PackageCode
    text = module.Subject
  Next
End Sub

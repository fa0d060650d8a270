' List lists all modules of the catalog with eight properties each. The first call makes the catalog.
' Its folder is that of the settings, so the argument is not used.
Option Explicit

Dim catalog

Sub List(folder)
  Dim module, text
  If IsEmpty(catalog) Then
    Set catalog = CreateObject("QmMMUpdater.MMCatalog")
  End If
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

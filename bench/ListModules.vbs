' List reads eight properties of every module of the catalog. The first call creates the catalog. The
' argument is not used: the folder comes from the settings.
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

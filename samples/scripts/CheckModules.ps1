# Reports what would go wrong if the modules of the catalog were merged.
#
#   powershell -ExecutionPolicy Bypass -File CheckModules.ps1
#
# The server and QmMergeSet.dll must be registered. Exits with 0 if nothing is wrong, otherwise with 1.

$ErrorActionPreference = 'Stop'
$catalog = New-Object -ComObject QmMMUpdater.MMCatalog
$mergeSet = New-Object -ComObject QmMMUpdater.MergeSet
$mergeSet.Load($catalog)
$findings = @($mergeSet.Check())
foreach ($finding in $findings) {
    Write-Output "$($finding.Code): $($finding.Text)"
}
if ($findings.Count -gt 0) { exit 1 }

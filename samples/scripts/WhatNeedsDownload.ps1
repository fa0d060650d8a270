# Lists the modules of the catalog that must be downloaded before they can be used, and their files.
#
#   powershell -ExecutionPolicy Bypass -File WhatNeedsDownload.ps1
#
# The server must be registered. Exits with 0 if there is nothing to download, otherwise with 1.

$ErrorActionPreference = 'Stop'
$exitCode = 0
$catalog = New-Object -ComObject QmMMUpdater.MMCatalog
foreach ($module in $catalog.MergeModules) {
    if ($module.NeedsDownload) {
        $exitCode = 1
        Write-Output "$($module.Key) $($module.Version) $($module.DisplayName)"
        foreach ($file in $module.DownloadFiles) {
            Write-Output "  $($file.InternetLocation), $($file.FileSize) bytes, to $($file.Location)"
        }
    }
}
exit $exitCode

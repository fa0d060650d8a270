#pragma once

#include "idl/qmmmupdater.h"
#include "module/RefCollectionImpl.h"

namespace qm::module {

class CMMFiles : public CRefCollectionImpl<IMMFile, IMMFiles> {};
class CMMDependencies : public CRefCollectionImpl<IMMDependency, IMMDependencies> {};
class CMMExclusions : public CRefCollectionImpl<IMMExclusion, IMMExclusions> {};
class CMMCustomActions : public CRefCollectionImpl<IMMCustomAction, IMMCustomActions> {};
class CMMDialogs : public CRefCollectionImpl<IMMDialog, IMMDialogs> {};
class CMergeModules : public CRefCollectionImpl<IMergeModule, IMergeModules> {};
class CMMSources : public CRefCollectionImpl<IMMSource, IMMSources> {};
class CMMGalleryDownloadFilesCaskel
    : public CRefCollectionImpl<IMMGalleryDownloadFileCaskel, IMMGalleryDownloadFilesCaskel> {};

}  // namespace qm::module

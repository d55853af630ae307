#include "project/ProjectModel.h"

namespace tarn {

CProjectModel::CProjectModel(FileSystem& disk)
    : services(disk),
      files(disk),
      types(services.types),
      views(services.views),
      state(services),
      paths(services, state),
      host(services),
      extensions(services),
      guard(disk),
      trust(disk),
      editLock(disk, trust) {}

CProjectModel::~CProjectModel() = default;

}  // namespace tarn

#include "project/ProjectModel.h"

namespace tarn {

CProjectModel::CProjectModel(FileSystem& disk)
    : services(disk),
      state(services),
      paths(services, state),
      host(services),
      extensions(services),
      protection(services, state, paths),
      derived(state, paths, services.types),
      loader(services, state, paths, protection),
      saver(services, state, paths, protection, derived),
      publisher(services, state, paths, host),
      importer(services, state, paths, host, protection),
      lifecycle(
          {services, state, paths, host, protection, derived, loader, saver, publisher, importer}),
      editor(services, state, paths, derived, publisher),
      options(services, state, paths, host, derived, publisher, editor, extensions),
      items({services, state, paths, host, extensions, protection, loader, publisher, lifecycle,
             editor, options}) {}

CProjectModel::~CProjectModel() = default;

}  // namespace tarn

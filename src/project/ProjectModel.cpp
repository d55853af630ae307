#include "project/ProjectModel.h"

namespace tarn {

CProjectModel::CProjectModel(FileSystem& disk)
    : services_(disk),
      state_(services_),
      paths_(services_, state_),
      host_(services_),
      extensions_(services_),
      protection_(services_, state_, paths_),
      definitions_(services_, state_, protection_.GetTrust()),
      derived_(state_, paths_, services_.types),
      loader_(services_, state_, paths_, protection_),
      saver_(services_, state_, paths_, protection_, derived_),
      publisher_(services_, state_, paths_, host_),
      importer_(services_, state_, paths_, host_, protection_),
      lifecycle_({services_, state_, paths_, host_, protection_, definitions_, derived_, loader_,
                  saver_, publisher_, importer_}),
      editor_(services_, state_, paths_, derived_, publisher_),
      options_(services_, state_, paths_, host_, definitions_, derived_, publisher_, editor_,
               extensions_),
      items_({services_, state_, paths_, host_, extensions_, protection_, loader_, publisher_,
              lifecycle_, editor_, options_}) {}

CProjectModel::~CProjectModel() = default;

}  // namespace tarn

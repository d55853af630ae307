#pragma once

#include "hosts/serve/ByteChannel.h"

namespace tarn::host {

// Channel over two descriptors, which may be the same one. They are borrowed.
class DescriptorChannel : public ByteChannel {
 public:
  // Throws std::system_error if no descriptor is available.
  DescriptorChannel(int inputDescriptor, int outputDescriptor);
  ~DescriptorChannel() override;

  Events Wait(bool forInput) override;
  void Wake() override;
  std::optional<std::size_t> Read(char* bytes, std::size_t size) override;
  WriteState WaitToWrite(std::chrono::milliseconds limit) override;
  std::optional<std::size_t> Write(std::string_view bytes) override;

 private:
  const int input_;
  const int output_;
  int wakeRead_ = -1;
  int wakeWrite_ = -1;
};

}  // namespace tarn::host

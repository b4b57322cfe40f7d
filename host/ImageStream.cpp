#include "host/ImageStream.h"

#include "host/Observer.h"

int host::ImageStream::setTransform(std::uint32_t transform) {
  observe([&] {
    return Effect{"stream.setTransform", {{"id", mId}, {"value", std::int64_t{transform}}}};
  });
  return 0;
}

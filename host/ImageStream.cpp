#include "host/ImageStream.h"

#include "host/Phone.h"

int host::ImageStream::setTransform(std::uint32_t transform) {
  Phone::current().effects.add([&] {
    return Effect{"stream.setTransform", {{"id", mId}, {"value", std::int64_t{transform}}}};
  });
  return 0;
}

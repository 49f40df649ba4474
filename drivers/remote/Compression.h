#pragma once

#include <grpc/compression.h>
#include <grpc/grpc.h>

namespace tarvik::remote {

/// Channel arguments of both sides. A compressed message would pass the limit for messages, which counts the bytes on
/// the wire, and fill the memory: none is taken apart, and one that comes is refused.
template <class SetInt>
void ForbidCompression(SetInt set) {
  set(GRPC_ARG_ENABLE_PER_MESSAGE_DECOMPRESSION, 0);
  set(GRPC_ARG_ENABLE_PER_MESSAGE_COMPRESSION, 0);
  set(GRPC_COMPRESSION_CHANNEL_DEFAULT_ALGORITHM, GRPC_COMPRESS_NONE);
  // A set of bits, with "none" as the lowest.
  set(GRPC_COMPRESSION_CHANNEL_ENABLED_ALGORITHMS_BITSET, 1 << GRPC_COMPRESS_NONE);
}

}  // namespace tarvik::remote

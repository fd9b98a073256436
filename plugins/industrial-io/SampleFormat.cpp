// SPDX-License-Identifier: MIT
#include "SampleFormat.h"

namespace {

constexpr int kBitsPerByte = 8;
constexpr int kMaxBits = 64;

} // namespace

bool SampleFormat::IsValid() const
{
    return storageBits > 0 && storageBits <= kMaxBits && storageBits % kBitsPerByte == 0 && bits > 0 &&
           shift >= 0 && bits + shift <= storageBits && repeat > 0;
}

qint64 decodedSample(const SampleFormat& format, const uchar* bytes)
{
    const int count = format.storageBits / kBitsPerByte;
    quint64 word = 0;
    for (int i = 0; i < count; ++i)
        word = word << kBitsPerByte | bytes[format.isBigEndian ? i : count - 1 - i];
    word >>= format.shift;
    if (format.bits == kMaxBits)
        return static_cast<qint64>(word);
    const quint64 range = quint64{1} << format.bits;
    word &= range - 1;
    const bool isNegative = format.isSigned && (word >> (format.bits - 1) & 1) != 0;
    return static_cast<qint64>(isNegative ? word - range : word);
}

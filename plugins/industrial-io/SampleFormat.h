// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// How the kernel lays out one channel of a scan, as "le:s12/16X2>>4" tells it: byte order, sign, bits that
/// count, bits that are stored, repetitions and right shift.
struct SampleFormat
{
    int bits = 16;        ///< that count, 1 to 64
    int storageBits = 16; ///< a multiple of 8, at most 64
    int shift = 0;
    int repeat = 1; ///< stored values of one sample
    bool isSigned = true;
    bool isBigEndian = false;

    /// Whether a value can be made of it.
    bool IsValid() const;
    int StorageBytes() const { return storageBits / 8 * repeat; }
};

/// The value at `bytes`, of which there are StorageBytes(); of a repeated one the first. The format is valid.
qint64 decodedSample(const SampleFormat& format, const uchar* bytes);

// SPDX-License-Identifier: MIT
#include "CRecordingReader.h"

#include "CCsvReader.h"
#include "CIagaReader.h"
#include "CRecordReader.h"

namespace {

template <class Reader> std::unique_ptr<CRecordingReader> openAs(const QString& path)
{
    auto reader = std::make_unique<Reader>(path);
    return reader->Open() ? std::move(reader) : nullptr;
}

} // namespace

CRecordingReader::~CRecordingReader() = default;

std::unique_ptr<CRecordingReader> CRecordingReader::Open(const QString& path)
{
    for (const auto open : {openAs<CIagaReader>, openAs<CRecordReader>, openAs<CCsvReader>}) {
        if (auto reader = open(path))
            return reader;
    }
    return nullptr;
}

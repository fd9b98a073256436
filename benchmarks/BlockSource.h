// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFieldIntensityResult.h"
#include "CMeasureBlock.h"

#include <cmath>
#include <random>

/// Blocks of noise on a slow wave, as an instrument makes them, without a gap in time.
class BlockSource
{
public:
    static constexpr int kBlockSize = 100;
    static constexpr int kRateHz = 10000;

    QSharedPointer<CMeasureBlock> next(int blockSize = kBlockSize)
    {
        auto block = QSharedPointer<CMeasureBlock>::create();
        for (int i = 0; i < blockSize; ++i, ++m_sample) {
            auto result = QSharedPointer<CFieldIntensityResult>::create();
            const qint64 ns = m_sample * (1000000000 / kRateHz);
            result->Timestamp = QDateTime::fromMSecsSinceEpoch(kEpochMs + ns / 1000000);
            result->TimestampNanoseconds = static_cast<quint32>(ns % 1000000000);
            const auto wave = static_cast<float>(std::sin(static_cast<double>(m_sample) * 1e-4));
            result->SetBx(wave + m_noise(m_engine));
            result->SetBy(m_noise(m_engine));
            result->SetBz(40.0F + m_noise(m_engine));
            result->SetB(48.0F + m_noise(m_engine));
            result->SetBBprime(47.0F + m_noise(m_engine));
            result->SetDB(0.1F);
            block->Results.append(result);
        }
        return block;
    }

private:
    static constexpr qint64 kEpochMs = 1600000000000;

    std::mt19937 m_engine{1};
    std::normal_distribution<float> m_noise{0.0F, 0.05F};
    qint64 m_sample = 0;
};

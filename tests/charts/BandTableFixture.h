// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFrequencyTableData.h"
#include "CUserNotifier.h"
#include "OperationFixture.h"

#include <memory>

using Model = CFrequencyTableData;

/// Writes down what the user is told.
class RecordingNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString& title, const QString& text) override
    {
        calls.append(title + QLatin1Char('|') + text);
    }
    void Beep() override { calls.append(QStringLiteral("beep")); }

    QStringList calls; ///< "title|text" of tray messages, and "beep", in their order
};

/// A band table over an operation of its own.
struct BandTableFixture : OperationFixture
{
    void start()
    {
        m_model.reset();
        OperationFixture::start();
        m_notifier.calls.clear();
        m_model = std::make_unique<Model>(m_operation.get(), &m_notifier);
        recordParameters(100.0, 20, 0.0, 50.0);
    }

    void addBlock(const Block& block) { dataSet().AddBlock(block); }

    /// A block whose B stands still.
    Block levelBlock(float level)
    {
        auto block = Block::create();
        for (int i = 0; i < 20; ++i)
            block->Results.append(makeResult(m_nextSample++ * m_spacingNs, {level, 0, 0, 0, 0, 0}));
        return block;
    }

    QVariant valueAt(int row, int role) const { return m_model->data(m_model->index(row, 0), role); }

    QStringList texts(int role) const
    {
        QStringList all;
        for (int row = 0; row < m_model->rowCount(); ++row)
            all.append(valueAt(row, role).toString());
        return all;
    }

    RecordingNotifier m_notifier;
    std::unique_ptr<Model> m_model;
};

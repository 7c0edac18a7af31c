#pragma once

#include <QString>
#include <QTemporaryDir>

namespace store {
class Store;
}

namespace bench {

// A temporary program folder holding velmora.mdb with a sample household
// history of ten years ending 2026-03-31; removed when the program ends.
class SampleFolder
{
public:
    explicit SampleFolder(int operations);
    QString dir() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

// One folder per size, made on first use.
const SampleFolder& sampleFolder(int operations);

// A store that has read the folder's file, one per size.
store::Store& sampleStore(int operations);

} // namespace bench

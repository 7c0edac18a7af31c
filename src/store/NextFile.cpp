#include "NextFile.h"

#include "DatabaseDiff.h"

namespace store {

NextFile::NextFile(jet::Database contents) : m_contents(std::move(contents)), m_file(*m_contents) {}

NextFile::NextFile(const jet::FileImage& previous, std::vector<jet::TableChanges> changes,
                   std::vector<jet::Table> added)
    : m_previous(&previous), m_changes(std::move(changes)), m_added(std::move(added)),
      m_file(previous, m_changes, m_added)
{}

std::string NextFile::firstDifference() const
{
    if (m_contents)
        return firstDifferenceInFile(*m_contents, bytes());
    return firstDifferenceInChangedFile(m_previous->bytes(), bytes(), m_changes, m_added);
}

} // namespace store

#pragma once
// Builds a document from what an RTF text holds.

#include "platform/rich/RtfContent.h"

#include <QTextCursor>
#include <map>
#include <utility>

class QTextDocument;
class QTextList;

namespace vardelin {

class RtfBuilder
{
public:
    explicit RtfBuilder(QTextDocument &document); // which is emptied
    void build(const RtfContent &content);

private:
    void paragraph(const RtfParagraph &paragraph, QTextCursor &cursor, bool reuseBlock);
    void joinList(const RtfList &list, QTextCursor &cursor);
    void table(const RtfTable &table);

    QTextDocument &m_document;
    const RtfContent *m_content = nullptr;
    RtfPictureStore m_pictures;
    std::map<std::pair<int, int>, QTextList *> m_lists; // the last one of each style and indent
};

} // namespace vardelin

#pragma once
// Pictures on their way into a rich text document and between two of them.

#include <QByteArray>
#include <QImage>
#include <QTextImageFormat>
#include <optional>

class QTextDocument;

namespace vardelin {

// Puts a picture file's bytes into the document: PNG and JPEG as they are, other kinds turned into PNG. The
// name in the format comes from the content, so two pictures never meet under one name. nullopt where the
// bytes are no picture.
std::optional<QTextImageFormat> addPicture(QTextDocument &document, const QByteArray &file);
std::optional<QTextImageFormat> addPicture(QTextDocument &document, const QImage &image);

// Takes the pictures of `pasted`, loaded from data: and file addresses, into `target`, and renames them in
// `pasted`. One that can't be had without a network gives way to its alternative text.
void adoptPictures(QTextDocument &pasted, QTextDocument &target);

} // namespace vardelin

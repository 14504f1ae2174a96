#pragma once
// Documents to write and read, and a description of a document to compare two of them by.

#include <QByteArray>
#include <QImage>
#include <QStringList>
#include <QTextDocument>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace vardelin::test {

// Every block and fragment with all properties of their formats, lists, tables, and the pixels and size of
// every picture.
QStringList describe(const QTextDocument &document);

// One line that differs says more than two long lists.
void expectSame(const QTextDocument &actual, const QTextDocument &expected);

std::string utf8(const QString &text);

QImage testImage(int width, int height);
QByteArray encoded(const QImage &image, const char *format);

struct Sample
{
    const char *name;
    std::function<void(QTextDocument &)> make;
};
const std::vector<Sample> &samples();

} // namespace vardelin::test

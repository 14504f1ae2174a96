#pragma once
// Texts against files that were looked over once. VARDELIN_GOLDEN=write writes them anew.

#include <QFile>
#include <gtest/gtest.h>

namespace vardelin::testing_support {

inline void expectGolden(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (qEnvironmentVariable("VARDELIN_GOLDEN") == QLatin1String("write")) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write(text);
        return;
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    EXPECT_EQ(file.readAll().toStdString(), text.toStdString());
}

} // namespace vardelin::testing_support

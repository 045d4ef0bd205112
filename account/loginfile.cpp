#include "account/loginfile.h"

#include <QFile>

#include <cstdio>
#include <memory>

std::optional<LoginFile> LoginFile::read(const QString &path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(QFile::encodeName(path).constData(), "re"),
                                                                &std::fclose);
    if (!file)
        return std::nullopt;
    const auto line = [&file] {
        char buffer[32] = {};
        return QByteArray(std::fgets(buffer, sizeof buffer, file.get()) ? buffer : "");
    };
    LoginFile result;
    result.email = value(line());
    result.password = value(line());
    return result;
}

QByteArray LoginFile::value(const QByteArray &line)
{
    const qsizetype size = line.size();
    if (size >= 2 && line.at(size - 2) == '\r')
        return line.left(size - 2);
    if (size >= 1 && line.at(size - 1) == '\r')
        return line.left(size - 1);
    return line;
}

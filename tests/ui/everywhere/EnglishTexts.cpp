#include "tests/ui/everywhere/EnglishTexts.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace tavinor {

namespace {

/// What an English dictionary has, but the program too: names of the processor's registers, lines and
/// instructions and of file kinds, the about box's button, and words and keys that are Spanish all the same.
const QSet<QString> ownWords{"bc",  "hex",    "ie",    "lxi",  "ok",     "pc",   "reset",
                             "sid", "sod",    "trap",  "alt",  "bit",    "byte", "bytes",
                             "hay", "insert", "intro", "pone", "windows"};

QSet<QString> dictionary(const char* path) {
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", path);
    QSet<QString> words;
    while (!file.atEnd()) words.insert(QString::fromUtf8(file.readLine()).trimmed().toLower());
    return words;
}

/// Without access keys and what follows a tab: the key of a command.
QString plain(QString text) {
    return text.remove('&').section('\t', 0, 0).trimmed();
}

struct Translated {
    QString source;
    QString translation;
};

QList<Translated> catalogue(const char* path) {
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", path);
    QXmlStreamReader xml(&file);
    QList<Translated> texts;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QStringLiteral("source")) {
            texts.append({plain(xml.readElementText()), {}});
        } else if (xml.name() == QStringLiteral("translation")) {
            texts.last().translation = plain(xml.readElementText(QXmlStreamReader::IncludeChildElements));
        }
    }
    if (xml.hasError()) qFatal("%s: %s", path, qPrintable(xml.errorString()));
    return texts;
}

}  // namespace

EnglishTexts::EnglishTexts()
    : english_(dictionary(TAVINOR_ENGLISH_WORDS)), spanish_(dictionary(TAVINOR_SPANISH_WORDS)) {
    for (const auto& [source, translation] : catalogue(TAVINOR_QT_CATALOGUE)) {
        if (source != translation) sources_.insert(source);
    }
    for (const auto& [source, translation] : catalogue(TAVINOR_OWN_CATALOGUE)) {
        if (source == translation) sources_.remove(source);
        if (source != translation) sources_.insert(source);
    }
}

bool EnglishTexts::isWord(const QString& word) const {
    return word.size() > 1 && english_.contains(word) && !spanish_.contains(word) && !ownWords.contains(word);
}

QStringList EnglishTexts::in(const QString& text) const {
    static const QRegularExpression tags("<[^>]*>");
    static const QRegularExpression noLetters("[^\\p{L}]+");
    QStringList found;
    if (sources_.contains(plain(text))) found.append(plain(text));
    for (const QString& key : text.section('\t', -1).split('+')) {
        if (sources_.contains(key)) found.append(key);
    }
    for (const QString& word : QString(text).remove('&').remove(tags).toLower().split(noLetters)) {
        if (isWord(word)) found.append(word);
    }
    return found;
}

}  // namespace tavinor

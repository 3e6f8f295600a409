#include "tests/monkey/Playground.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tavinor::monkey {

namespace {

QByteArray allBytes() {
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>(i * 37 % 256);
    return bytes;
}

/// One record at 0000; the loader checks the sum.
QByteArray program(const QByteArray& hexBytes) {
    const QByteArray data = QByteArray::fromHex(hexBytes);
    QByteArray record = QByteArray(1, static_cast<char>(data.size())) + QByteArray(3, '\0') + data;
    int sum = 0;
    for (const char byte : record) sum += static_cast<unsigned char>(byte);
    record += static_cast<char>(-sum & 0xFF);
    return ':' + record.toHex().toUpper() + "\r\n:00000001FF\r\n";
}

}  // namespace

Playground::Playground() {
    if (!folder_.isValid()) qFatal("no temporary folder");
    qputenv("HOME", QFile::encodeName(folder_.path()));
    QDir::setCurrent(folder_.path());
    copyExamples();
    writePrograms();
    writeSources();
    QDir(folder_.path()).mkpath(QStringLiteral("carpeta/salidas"));
    programs_ << folder_.filePath("carpeta") << folder_.filePath("no-existe.hex");
    sources_ << folder_.filePath("carpeta") << folder_.filePath("nuevo.asm")
             << folder_.filePath("no/hay/carpeta.asm");
    for (const char* name : {"carpeta/salidas/uno.txt", "carpeta/salidas/dos.asm", "carpeta/salidas",
                             "carpeta/no-hay/tres.txt", "carpeta/salidas/<b>cuatro</b>", "nuevo.asm"}) {
        targets_ << folder_.filePath(QString::fromLatin1(name));
    }
}

QString Playground::write(const QString& name, const QByteArray& content) {
    QFile file(folder_.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) qFatal("cannot write");
    return file.fileName();
}

void Playground::copyExamples() {
    const QDir examples(QStringLiteral(TAVINOR_EXAMPLES));
    for (const QFileInfo& file : examples.entryInfoList({"*.HEX", "*.asm"}, QDir::Files, QDir::Name)) {
        const QString copy = folder_.filePath(file.fileName());
        if (!QFile::copy(file.filePath(), copy)) qFatal("cannot copy %s", qPrintable(file.filePath()));
        (file.suffix() == QStringLiteral("HEX") ? programs_ : sources_) << copy;
    }
}

void Playground::writePrograms() {
    programs_ << write("vacio.hex", {}) << write("bytes.hex", allBytes())
              << write("suma.hex", ":0100000000FE\r\n:00000001FF\r\n")
              << write("tipo.hex", ":0100000500FA\r\n") << write("corto.hex", ":10000000AABB\r\n")
              << write("sin-fin.hex", ":0100000000FF\r\n") << write("dos-puntos.hex", ":")
              << write("larga.hex", ':' + QByteArray(100'000, 'F') + "\r\n:00000001FF\r\n")
              << write("final.hex", ":02FFFF00C300C1\r\n:00000001FF\r\n")
              << write("hlt.hex", program("76"))             // HLT alone
              << write("ei-hlt.hex", program("FB76C30000"))  // EI; HLT; JMP 0000
              << write("pila.hex", program("E5CD0000"))      // PUSH H; CALL 0000: fills memory
              << write("puertos.hex", program("3CD301DB01C30000"))
              << write("escribe.hex", program("3421010077C30000"));
}

void Playground::writeSources() {
    sources_ << write("vacio.asm", {}) << write("bytes.asm", allBytes())
             << write("error.asm", " org 0\n suma b\n mvi a\nx: jmp y\nx: hlt\n db 'a,300\n")
             << write("larga.asm", " db " + QByteArray("1,").repeated(20'000) + "1\n")
             << write("rotulo.asm", QByteArray(20'000, 'x') + ": nop\n")
             << write("final.asm", " org 0ffffh\n lxi h,1234h\n")
             << write("1252.asm", "; \xF1\xE1\xE9 Windows-1252\r nop\r hlt\r")
             << write("comillas \"y\" & <b>.asm", " nop\n hlt\n");
}

}  // namespace tavinor::monkey

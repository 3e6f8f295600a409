#include "ui/program/LastResort.h"

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>

using namespace tavinor;

namespace {

std::atomic<std::size_t> held = 0;  // bytes
std::atomic<std::size_t> mostHeld = SIZE_MAX;

}  // namespace

/// In place of the library's, in all the forms that it uses: memory is out when more than `mostHeld` is held.
void* operator new(std::size_t size) {
    if (held + size > mostHeld) throw std::bad_alloc();
    void* memory = std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    held += ::malloc_usable_size(memory);
    return memory;
}
void operator delete(void* memory) noexcept {
    if (memory != nullptr) held -= ::malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void operator delete[](void* memory) noexcept {
    operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

constexpr std::string_view rescued = "rescued\n";
constexpr std::size_t much = std::size_t{4} * 1024 * 1024;

void tellRescue() {
    if (write(STDOUT_FILENO, rescued.data(), rescued.size()) < 0) std::_Exit(EXIT_FAILURE);
}

void loseMemory() {
    mostHeld = held.load();
    const auto memory = std::make_unique<char[]>(much);
    memory[0] = 'x';
}

[[noreturn]] void crash() {
    std::raise(SIGSEGV);
    std::_Exit(EXIT_SUCCESS);
}

/// What happens inside an event handler.
void happens(std::string_view what) {
    if (what == "exit") std::exit(EXIT_SUCCESS);
    if (what == "exception") throw std::runtime_error("there is no handler for this");
    if (what == "memory") loseMemory();
    if (what == "abort") std::abort();
    if (what == "crash") crash();
    if (what == "end") QApplication::exit();
}

int runProgram(int argc, char* argv[], std::string_view what) {
    QApplication application(argc, argv);
    const LastResort lastResort([] {
        const auto memory = std::make_unique<char[]>(much);
        tellRescue();
    });
    QTimer::singleShot(0, [what] { happens(what); });
    return QApplication::exec();
}

}  // namespace

class LastResortTest : public QObject {
    Q_OBJECT

  private:
    struct End {
        QByteArray output;
        bool good;
    };

    static End endOf(const QString& what) {
        QProcess program;
        program.setProcessChannelMode(QProcess::SeparateChannels);
        program.start(QApplication::applicationFilePath(), {"happens", what});
        if (!program.waitForFinished()) {
            program.kill();
            return {"does not end", false};
        }
        const bool good = program.exitStatus() == QProcess::NormalExit && program.exitCode() == EXIT_SUCCESS;
        return {program.readAllStandardOutput(), good};
    }

  private slots:
    void isReached_data() {
        QTest::addColumn<bool>("is");
        QTest::newRow("exit") << true;
        QTest::newRow("exception") << true;
        QTest::newRow("memory") << true;
        QTest::newRow("abort") << true;
        QTest::newRow("crash") << true;
        QTest::newRow("end") << false;
    }

    void isReached() {
        QFETCH(bool, is);
        const QByteArray expected = is ? QByteArray(rescued.data(), rescued.size()) : QByteArray();
        const End end = endOf(QTest::currentDataTag());
        QCOMPARE(end.output, expected);  // once
        QCOMPARE(end.good, !is);         // and it has ended by what happened
    }

    void actsOnce() {
        int count = 0;
        LastResort lastResort([&count] { ++count; });
        lastResort.act();
        lastResort.act();
        QCOMPARE(count, 1);
    }
};

int main(int argc, char* argv[]) {
    if (argc == 3 && std::string_view(argv[1]) == "happens") return runProgram(argc, argv, argv[2]);
    const QApplication application(argc, argv);
    LastResortTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "LastResortTest.moc"

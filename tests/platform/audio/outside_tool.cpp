#include "tests/platform/audio/outside_tool.h"

#include "tests/platform/audio/temp_folder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace orvel::test {
namespace {

/// C strings that live as long as this.
class StringArray {
  public:
    explicit StringArray(const QStringList &strings) {
        for (const QString &string : strings) {
            bytes_.push_back(string.toLocal8Bit());
        }
        for (QByteArray &bytes : bytes_) {
            pointers_.push_back(bytes.data());
        }
        pointers_.push_back(nullptr);
    }
    char *const *data() { return pointers_.data(); }

  private:
    std::vector<QByteArray> bytes_;
    std::vector<char *> pointers_;
};

QStringList ourEnvironment() {
    QStringList variables;
    for (char **variable = environ; *variable != nullptr; ++variable) {
        variables << QString::fromLocal8Bit(*variable);
    }
    return variables;
}

} // namespace

pid_t startTool(const QString &program, const QStringList &arguments, const QString &outputFile,
                const QString &errorFile, const QStringList &variables) {
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.toLocal8Bit().constData(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorFile.toLocal8Bit().constData(), flags, 0600);
    StringArray words(QStringList{program} + arguments);
    StringArray environment(variables + ourEnvironment()); // the first of a name counts
    pid_t pid = -1;
    posix_spawnp(&pid, program.toLocal8Bit().constData(), &actions, nullptr, words.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

int waitForTool(pid_t pid) {
    int status = 0;
    return pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ToolResult runTool(const QString &program, const QStringList &arguments, const QStringList &variables) {
    const TempFolder folder;
    ToolResult result;
    result.exitCode = waitForTool(startTool("timeout", QStringList{"30", program} + arguments, folder.path("out"),
                                            folder.path("err"), variables));
    result.output = QString::fromUtf8(contentOf(folder.path("out")));
    result.errors = QString::fromUtf8(contentOf(folder.path("err")));
    return result;
}

double soxStat(const QString &path, const QString &name, const QStringList &effects) {
    const QString text = runTool("sox", QStringList{path, "-n"} + effects + QStringList{"stat"}).errors;
    for (const QString &line : text.split(u'\n')) {
        if (line.startsWith(name + u':')) {
            return line.section(u':', 1).trimmed().toDouble();
        }
    }
    return -1;
}

} // namespace orvel::test

// zelkfilter: the desktop application.
//
//   zelkfilter [--startup-time]
//
// --startup-time: when the main window is first exposed on the screen, prints how long
// the start took and ends the program: one line "mapped EPOCH main SECONDS process
// SECONDS", the wall-clock time of the exposure (seconds since the epoch, for a launcher
// that noted its own launch time), the time since main() began and the time since the
// process was created (to the kernel's 10 ms). tools/startup-time.sh runs it under Xvfb.
#include <QApplication>
#include <QEvent>
#include <QWindow>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "shell/qt/qtdesktop.h"

namespace {

// Seconds since the process was created: its start in clock ticks since boot
// (/proc/self/stat, field 22) against the boot-time clock; -1 where there is no /proc.
double processage() {
    std::ifstream f("/proc/self/stat");
    std::string stat;
    if (!std::getline(f, stat)) return -1;
    // The command name in parentheses may hold blanks: the fields are counted after it.
    size_t close = stat.rfind(')');
    if (close == std::string::npos) return -1;
    std::istringstream rest(stat.substr(close + 2));
    std::string field;
    for (int i = 3; i <= 22 && rest >> field; ++i)
        if (i == 22) {
            timespec now{};
            clock_gettime(CLOCK_BOOTTIME, &now);
            const double ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
            return static_cast<double>(now.tv_sec) + now.tv_nsec * 1e-9 - std::stod(field) / ticks;
        }
    return -1;
}

// Watches the main window for its first exposure, then reports and ends the event loop.
class StartupTimer : public QObject {
  public:
    explicit StartupTimer(std::chrono::steady_clock::time_point main) : main_(main) {}
    bool eventFilter(QObject* o, QEvent* e) override {
        if (!done_ && e->type() == QEvent::Expose && static_cast<QWindow*>(o)->isExposed()) {
            done_ = true;
            const double sincemain = std::chrono::duration<double>(std::chrono::steady_clock::now() - main_).count();
            const double epoch =
                std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
            std::printf("mapped %.6f main %.6f process %.3f\n", epoch, sincemain, processage());
            std::fflush(stdout);
            QCoreApplication::exit(0);
        }
        return false;
    }

  private:
    std::chrono::steady_clock::time_point main_;
    bool done_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const auto started = std::chrono::steady_clock::now();
    bool startuptime = false;
    for (int i = 1; i < argc; ++i) startuptime = startuptime || std::strcmp(argv[i], "--startup-time") == 0;
    QApplication app(argc, argv);
    QApplication::setApplicationName("zelkfilter");
    QApplication::setApplicationDisplayName("ZELK Filter Design");
    zelk::qt::QtDesktop desktop;
    zelk::qt::DesignFrame* frame = desktop.start();
    frame->show();
    // The exposure comes through the event loop, after show() has made the native window.
    StartupTimer timer(started);
    if (startuptime && frame->windowHandle()) frame->windowHandle()->installEventFilter(&timer);
    int rc = app.exec();
    zelk::setdesktop(nullptr);
    delete frame;
    return rc;
}

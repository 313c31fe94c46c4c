#include "common/PipeWatch.h"

#include <fcntl.h>
#include <unistd.h>
#include <QFile>
#include <chrono>

PipeWatch::PipeWatch(const QString& pipe)
    : thread_([this, path = QFile::encodeName(pipe)] {
          while (!stop_.load()) {
              // Without a reader a non-blocking open for writing fails.
              const int fd = ::open(path.constData(), O_WRONLY | O_NONBLOCK);
              if (fd >= 0) {
                  opened_.store(true);
                  ::close(fd);
              }
              std::this_thread::sleep_for(std::chrono::milliseconds(5));
          }
      }) {}

PipeWatch::~PipeWatch() {
    stop_.store(true);
    thread_.join();
}

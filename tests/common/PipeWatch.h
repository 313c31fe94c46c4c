#pragma once

#include <fcntl.h>
#include <unistd.h>
#include <QFile>
#include <QString>
#include <atomic>
#include <chrono>
#include <thread>

// Keeps a reader from blocking on a named pipe for ever: a thread of its own opens
// and closes the writing end whenever a reader has the pipe open or waits in
// open(), so that reader gets end of file at once. opened() tells whether one came.
class PipeWatch {
  public:
    explicit PipeWatch(const QString& pipe)
        : thread_([this, path = QFile::encodeName(pipe)] {
              while (!stop_) {
                  // Without a reader a non-blocking open for writing fails.
                  const int fd = ::open(path.constData(), O_WRONLY | O_NONBLOCK);
                  if (fd >= 0) {
                      opened_ = true;
                      ::close(fd);
                  }
                  std::this_thread::sleep_for(std::chrono::milliseconds(5));
              }
          }) {}
    ~PipeWatch() {
        stop_ = true;
        thread_.join();
    }
    bool opened() const { return opened_; }

  private:
    std::atomic_bool stop_{false};
    std::atomic_bool opened_{false};
    std::thread thread_;
};

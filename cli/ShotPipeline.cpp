#include "cli/ShotPipeline.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "cli/ImageFile.h"
#include "cli/ShotReport.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;

/// A frame on its way. Without a picture it is done with, and result says how.
struct Traveller {
  FrameResult result;
  std::shared_ptr<const FilePicture> picture;
};

/// Hands travellers from thread to thread; the order is that of their coming.
class Queue {
 public:
  void push(Traveller traveller) {
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(std::move(traveller));
    changed_.notify_one();
  }

  /// No more will come.
  void close() {
    const std::scoped_lock lock(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

  /// Nothing when all have been taken and no more will come.
  std::optional<Traveller> pop() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return closed_ || !waiting_.empty(); });
    if (waiting_.empty()) return std::nullopt;
    Traveller first = std::move(waiting_.front());
    waiting_.pop_front();
    return first;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Traveller> waiting_;
  bool closed_ = false;
};

/// Does a step of a frame, adds its time, and turns what it throws into the frame's failure.
template <class Work>
bool step(FrameResult& result, const Work& work) {
  const Clock::time_point begin = Clock::now();
  bool good = true;
  try {
    work();
  } catch (const std::bad_alloc&) {
    result.message = "out of memory";
    good = false;
  } catch (const std::exception& error) {
    result.message = error.what();
    good = false;
  }
  result.seconds += std::chrono::duration<double>(Clock::now() - begin).count();
  if (!good) result.kind = FrameResult::Kind::failed;
  return good;
}

/// True when the file stands there and can be read to its end.
bool standsWhole(const std::filesystem::path& file, uint64_t mostMemory) {
  try {
    readPicture(file, mostMemory);
    return true;
  } catch (const UserError&) {
    return false;
  }
}

/// Reads frames; a still that serves all of them is read once.
class Source {
 public:
  Source(const std::vector<ShotFrame>& frames, const Arguments& arguments, const FramePictures& pictures,
         const std::optional<PictureSize>& size)
      : frames_(frames), arguments_(arguments), pictures_(pictures), size_(size) {}

  Traveller next(std::size_t index) {
    Traveller traveller;
    traveller.result.index = index;
    const ShotFrame& frame = frames_[index];
    step(traveller.result, [&] {
      const bool wanted = !arguments_.skipExisting && !arguments_.checkOnly;
      if (!wanted && standsWhole(frame.output, arguments_.mostMemory)) {
        traveller.result.kind = FrameResult::Kind::skipped;
        return;
      }
      if (arguments_.checkOnly) throw UserError("no whole file " + quoted(frame.output));
      if (last_ == nullptr || lastFile_ != frame.input) {
        auto picture = std::make_shared<const FilePicture>(pictures_.read(frame.input));
        checkSize({picture->image.width(), picture->image.height()});
        last_ = std::move(picture);
        lastFile_ = frame.input;
      }
      traveller.picture = last_;
    });
    return traveller;
  }

 private:
  /// A stray frame is told rather than rendered with dots in other places.
  void checkSize(PictureSize size) const {
    if (!size_ || size == *size_) return;
    throw UserError("it is " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                    " pixels, and the first frame is " + std::to_string(size_->width) + " x " +
                    std::to_string(size_->height));
  }

  const std::vector<ShotFrame>& frames_;
  const Arguments& arguments_;
  const FramePictures& pictures_;
  const std::optional<PictureSize>& size_;
  std::filesystem::path lastFile_;
  std::shared_ptr<const FilePicture> last_;
};

void draw(Traveller& traveller, const ShotFrame& frame, FrameDrawer& drawer) {
  std::shared_ptr<const FilePicture> drawn;
  step(traveller.result, [&] {
    drawn = std::make_shared<const FilePicture>(drawer.draw(*traveller.picture, frame.input, frame.number));
  });
  traveller.picture = std::move(drawn);
}

void write(Traveller& traveller, const ShotFrame& frame, const FrameDrawer& drawer) {
  const bool good = step(traveller.result, [&] { drawer.pictures().write(frame.output, *traveller.picture); });
  if (good) traveller.result.kind = FrameResult::Kind::done;
  traveller.picture.reset();
}

}  // namespace

std::optional<PictureSize> sizeOfShot(const std::vector<ShotFrame>& frames, const FramePictures& pictures) {
  for (const ShotFrame& frame : frames) {
    try {
      return pictures.sizeOf(frame.input);
    } catch (const UserError&) {
      // The frame fails by name when its turn comes; the next one tells the size.
      continue;
    }
  }
  return std::nullopt;
}

void runPipeline(const std::vector<ShotFrame>& frames, const Arguments& arguments, FrameDrawer& drawer,
                 const std::function<void(const FrameResult&)>& take, const std::function<void(FrameStep)>& pass) {
  const std::size_t writerCount = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
  const std::size_t most = writerCount + 3;  // one in reading, one in drawing, one between
  std::mutex mutex;
  std::condition_variable freed;
  std::size_t travelling = 0;

  const auto arrive = [&](Traveller& traveller) {
    traveller.picture.reset();
    traveller.result.peakMemory = peakMemory();
    const std::scoped_lock lock(mutex);
    take(traveller.result);
    --travelling;
    freed.notify_one();
  };

  Queue toDraw;
  Queue toWrite;
  std::jthread reader([&] {
    const std::optional<PictureSize> size = sizeOfShot(frames, drawer.pictures());
    Source source(frames, arguments, drawer.pictures(), size);
    for (std::size_t i = 0; i < frames.size(); ++i) {
      {
        std::unique_lock lock(mutex);
        freed.wait(lock, [&] { return travelling < most; });
        ++travelling;
      }
      toDraw.push(source.next(i));
    }
    toDraw.close();
  });
  std::vector<std::jthread> writers;
  for (std::size_t i = 0; i < writerCount; ++i) {
    writers.emplace_back([&] {
      while (std::optional<Traveller> traveller = toWrite.pop()) {
        write(*traveller, frames[traveller->result.index], drawer);
        arrive(*traveller);
      }
    });
  }
  while (std::optional<Traveller> traveller = toDraw.pop()) {
    if (traveller->picture != nullptr) draw(*traveller, frames[traveller->result.index], drawer);
    pass(FrameStep::drawn);
    if (traveller->picture != nullptr) {
      toWrite.push(std::move(*traveller));
    } else {
      arrive(*traveller);
    }
  }
  toWrite.close();
}

FrameResult renderFrame(const std::vector<ShotFrame>& frames, std::size_t index, const Arguments& arguments,
                        FrameDrawer& drawer, const std::optional<PictureSize>& size) {
  Source source(frames, arguments, drawer.pictures(), size);
  Traveller traveller = source.next(index);
  if (traveller.picture != nullptr) draw(traveller, frames[index], drawer);
  if (traveller.picture != nullptr) write(traveller, frames[index], drawer);
  traveller.result.peakMemory = peakMemory();
  return traveller.result;
}

}  // namespace cli

// What an instance stores: kept with a project, duplicated, and come back as anything.
#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Image;
using standin::Matter;
using Bytes = std::vector<uint8_t>;

constexpr int32_t kRandomChanges = 60;

Image frameOfInstance(Life& life) {
  const Way way = mainWay(life.host);
  return drawn(life, way, frameOf(way.depth, 24, 18), life.host.defaults());
}

void mustHaveData(const Life& life) {
  if (life.host.sequenceData() == nullptr) throw Skipped("the module stores nothing with an instance");
}

// The form in which a project keeps it.
Bytes stored(Life& life) {
  mustHaveData(life);
  if ((life.host.outFlags() & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING) != 0) {
    life.trial.step("its sequence data is flattened");
    const PF_Err error = life.host.sequenceFlatten();
    if (error != PF_Err_NONE) life.trial.finding("it answers " + errorText(life.host, error));
  }
  return life.host.sequenceBytes();
}

// A loaded module with an instance of these bytes.
class Restored : public Loaded {
 public:
  Restored(Trial& whose, const Bytes& bytes) : Loaded(whose) {
    trial.step("setting the module up");
    if (host.globalSetup() != PF_Err_NONE || host.paramsSetup() != PF_Err_NONE) throw Skipped("it can't be set up");
    host.loadSequence(bytes);
  }
  ~Restored() {
    try {
      host.finish();
    } catch (...) {
      trial.finding(whatWasThrown());
    }
  }
  Restored(const Restored&) = delete;
  Restored& operator=(const Restored&) = delete;
};

void survivesAProject(Trial& trial) {
  Bytes bytes;
  Image before;
  {
    Life life(trial);
    before = frameOfInstance(life);
    bytes = stored(life);
  }
  Restored again(trial, bytes);
  trial.step("its stored data is set up again in another load");
  const PF_Err error = again.host.sequenceResetup();
  if (error != PF_Err_NONE) return trial.finding("it answers " + errorText(again.host, error));
  const Way way = mainWay(again.host);
  trial.step("drawing by an instance from a project");
  const standin::RenderResult result = draw(again.host, way, frameOf(way.depth, 24, 18), again.host.defaults());
  if (result.error != PF_Err_NONE) return trial.finding("it answers " + errorText(again.host, result.error));
  const std::string differs = difference(before, result.output);
  if (!differs.empty()) trial.finding("the frame looks otherwise: " + differs);
}

void isDuplicated(Trial& trial) {
  Life life(trial);
  const Image before = frameOfInstance(life);
  const Bytes bytes = stored(life);
  PF_Handle own = life.host.sequenceData();
  trial.step("the instance is duplicated");
  life.host.loadSequence(bytes);
  PF_Err error = life.host.sequenceResetup();
  if (error != PF_Err_NONE) trial.finding("the copy answers " + errorText(life.host, error));
  trial.step("drawing by the copy of an instance");
  if (const std::string differs = difference(before, frameOfInstance(life)); !differs.empty()) {
    trial.finding("the copy draws otherwise: " + differs);
  }
  error = life.host.sequenceSetdown();
  if (error != PF_Err_NONE) trial.finding("the copy's set-down answers " + errorText(life.host, error));
  life.host.setSequenceData(own);
  trial.step("drawing by an instance whose copy is gone");
  life.host.sequenceResetup();
  if (const std::string differs = difference(before, frameOfInstance(life)); !differs.empty()) {
    trial.finding("the instance draws otherwise: " + differs);
  }
}

void flatteningLeavesItUsable(Trial& trial) {
  Life life(trial);
  mustHaveData(life);
  if ((life.host.outFlags() & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING) == 0) {
    throw Skipped("the module's data needs no flattening");
  }
  const Image before = frameOfInstance(life);
  for (int32_t i = 0; i < 5; ++i) {
    trial.step("its sequence data is flattened and set up again");
    PF_Err error = life.host.sequenceFlatten();
    if (error != PF_Err_NONE) trial.finding("flattening answers " + errorText(life.host, error));
    error = life.host.sequenceResetup();
    if (error != PF_Err_NONE) trial.finding("the set-up answers " + errorText(life.host, error));
    const std::string differs = difference(before, frameOfInstance(life));
    if (!differs.empty()) trial.finding("the frame after it differs: " + differs);
  }
}

void storedTwiceTheSame(Trial& trial) {
  Life life(trial);
  const Bytes first = stored(life);
  life.host.loadSequence(first);
  trial.step("its stored data is set up again");
  if (life.host.sequenceResetup() != PF_Err_NONE) throw Skipped("its stored data isn't taken back");
  const Bytes second = stored(life);
  if (first != second) trial.finding("set up again and stored again, it is other data");
}

std::string bytesText(const Bytes& bytes) {
  return std::to_string(bytes.size()) + " bytes";
}

// Any answer will do, as long as there is one and the next steps can be taken.
void tryBytes(Trial& trial, const Bytes& bytes, const std::string& how) {
  Restored life(trial, bytes);
  trial.step("setting up " + how);
  const PF_Err error = life.host.sequenceResetup();
  if (error == PF_Err_NONE) {
    const Way way = mainWay(life.host);
    trial.step("drawing by an instance of " + how);
    static_cast<void>(draw(life.host, way, frameOf(way.depth, 12, 9), life.host.defaults()));
    if ((life.host.outFlags() & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING) != 0) {
      trial.step("flattening an instance of " + how);
      life.host.sequenceFlatten();
    }
  }
  tellComplaints(trial, life.host, {Matter::kOutside});
  trial.step("setting down an instance of " + how);
}

void corruptedDoesNoHarm(Trial& trial) {
  Bytes whole;
  {
    Life life(trial);
    whole = stored(life);
  }
  int32_t count = 0;
  const auto one = [&](const Bytes& bytes, const std::string& how) {
    tryBytes(trial, bytes, how);
    ++count;
  };
  for (size_t length = 0; length<whole.size(); length += whole.size()> 64 ? whole.size() / 32 : 1) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    one(cut, "stored data that is cut to " + bytesText(cut));
  }
  Bytes longer = whole;
  longer.resize(whole.size() + 100, 0x41);
  one(longer, "stored data that is too long");
  one(Bytes(whole.size(), 0), "stored data of zeros");
  one(Bytes(whole.size(), 0xFF), "stored data of ones");
  Chance chance(trial.seed());
  for (int32_t i = 0; i < kRandomChanges && !whole.empty(); ++i) {
    Bytes changed = whole;
    const int32_t changes = chance.whole(1, 6);
    std::string how = "stored data with changes:";
    for (int32_t k = 0; k < changes; ++k) {
      const auto place = static_cast<size_t>(chance.next() % changed.size());
      changed[place] = static_cast<uint8_t>(chance.happens(0.3) ? 0xFF : chance.whole(0, 255));
      how += " byte " + std::to_string(place) + " is " + std::to_string(changed[place]);
    }
    one(changed, how);
  }
  trial.note(std::to_string(count) + " kinds of stored data were tried");
}

void withoutData(Trial& trial) {
  Life life(trial);
  mustHaveData(life);
  PF_Handle own = life.host.sequenceData();
  trial.step("it is set up again without any stored data");
  life.host.setSequenceData(nullptr);
  const PF_Err error = life.host.sequenceResetup();
  if (error != PF_Err_NONE) trial.warning("it answers " + errorText(life.host, error));
  if (life.host.sequenceData() != nullptr) {
    trial.step("drawing by an instance that had no stored data");
    static_cast<void>(frameOfInstance(life));
    life.host.sequenceSetdown();
  }
  life.host.setSequenceData(own);
}

constexpr Promise kPromises[] = {
    {"stored-data-survives-a-project", "An instance from a project draws as the one that was stored.", Weight::kMust,
     kUsualSeconds, survivesAProject},
    {"stored-data-is-duplicated", "The copy of an instance draws as the instance, and each ends by itself.",
     Weight::kMust, kUsualSeconds, isDuplicated},
    {"flattening-leaves-the-instance-usable", "An instance draws the same after it was flattened and set up again.",
     Weight::kMust, kUsualSeconds, flatteningLeavesItUsable},
    {"stored-twice-the-same", "Stored data that was set up again is stored as the same bytes.", Weight::kShould,
     kUsualSeconds, storedTwiceTheSame},
    {"corrupted-stored-data-does-no-harm", "Stored data that is cut, too long or changed does no harm.", Weight::kMust,
     kUsualSeconds, corruptedDoesNoHarm},
    {"no-stored-data-does-no-harm", "A set-up again without stored data does no harm.", Weight::kMust, kUsualSeconds,
     withoutData},
};

}  // namespace

Subject sequencePromises() {
  return {"stored data", kPromises};
}

}  // namespace check

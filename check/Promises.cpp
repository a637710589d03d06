#include "check/Promise.h"

#include "check/Subjects.h"

namespace check {

const std::vector<Subject>& subjects() {
  static const std::vector<Subject> all = {
      setUpPromises(), parameterPromises(), drawingPromises(),  framePromises(),   sizePromises(),
      layerPromises(), valuePromises(),     sequencePromises(), failurePromises(), threadPromises(),
      limitPromises(), lifePromises(),      bookPromises()};
  return all;
}

const Promise* findPromise(std::string_view name) {
  for (const Subject& subject : subjects()) {
    for (const Promise& promise : subject.promises) {
      if (promise.name == name) return &promise;
    }
  }
  return nullptr;
}

}  // namespace check

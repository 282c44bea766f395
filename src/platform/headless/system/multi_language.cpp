#include "platform/multi_language.h"

namespace marklet {

Long CreateMultiLanguage(std::unique_ptr<MultiLanguageObject>&) {
  return static_cast<Long>(0x80040154);  // the class isn't registered
}

}  // namespace marklet

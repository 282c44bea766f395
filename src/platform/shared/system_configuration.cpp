#include "platform/system.h"

namespace marklet {

SystemConfiguration& Configuration() {
  thread_local SystemConfiguration configuration;
  return configuration;
}

}  // namespace marklet

// A value below the current user's hive, put back as it was when the test ends.
#pragma once

#include <string>
#include <vector>

#include "platform/win32/sdk.h"

namespace marklet::testing {

class RegistryValue {
 public:
  RegistryValue(const char* path, const char* name) : path_(path), name_(name) {
    RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, &disposition_);
    DWORD size = 0;
    existed_ = RegQueryValueExA(key_, name, nullptr, &type_, nullptr, &size) == ERROR_SUCCESS;
    former_.resize(size);
    if (existed_) RegQueryValueExA(key_, name, nullptr, nullptr, former_.data(), &size);
  }
  ~RegistryValue() {
    existed_ ? RegSetValueExA(key_, name_, 0, type_, former_.data(), static_cast<DWORD>(former_.size()))
             : RegDeleteValueA(key_, name_);
    RegCloseKey(key_);
    if (disposition_ == REG_CREATED_NEW_KEY) RegDeleteKeyA(HKEY_CURRENT_USER, path_);
  }
  RegistryValue(const RegistryValue&) = delete;
  RegistryValue& operator=(const RegistryValue&) = delete;

  void Put(const std::string& bytes, DWORD type = REG_SZ) const {
    RegSetValueExA(key_, name_, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                   static_cast<DWORD>(bytes.size()));
  }
  void Delete() const { RegDeleteValueA(key_, name_); }

 private:
  const char *path_, *name_;
  DWORD disposition_ = 0;
  ::HKEY key_ = nullptr;
  bool existed_ = false;
  DWORD type_ = 0;
  std::vector<BYTE> former_;
};

}  // namespace marklet::testing

// Writes the manifest with which a program uses the control without registration: manifest_generator FILE
//
// It is of the program's own bitness, as the server beside it is.
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

#include "activex/server/registration_data.h"

namespace marklet::activex {
namespace {

std::string Version() {
  return std::to_string(library::kMajorVersion) + "." + std::to_string(library::kMinorVersion);
}

std::string Traits() {
  std::string list;
  for (const Trait& trait : kTraits) {
    if (!list.empty()) list += ',';
    list += trait.name;
  }
  return list;
}

// No text in the tables needs escaping.
std::string Attribute(std::string_view name, std::string_view value) {
  return std::string(" ").append(name).append("=\"").append(value).append("\"");
}

std::string Element(std::string_view indent, std::string_view name, const std::string& attributes) {
  return std::string(indent).append("<").append(name).append(attributes).append("/>\n");
}

std::string Manifest() {
  const std::string_view machine = sizeof(void*) == 8 ? "amd64" : "x86";
  const std::string library_id = Attribute("tlbid", library::kGuid);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n";
  text += Element("  ", "assemblyIdentity",
                  Attribute("type", "win32") + Attribute("name", library::kName) +
                      Attribute("version", Version() + ".0.0") + Attribute("processorArchitecture", machine));
  text += "  <file" + Attribute("name", std::string(library::kName) + ".ocx") + ">\n";
  text += Element(
      "    ", "comClass",
      Attribute("clsid", library::kClass.guid) + library_id + Attribute("threadingModel", kThreadingModel) +
          Attribute("progid", std::string(library::kName) + "." + std::string(library::kClass.name)) +
          Attribute("description", library::kHelp) + Attribute("miscStatusContent", Traits()));
  text += Element("    ", "comClass",
                  Attribute("clsid", library::kImagePageClass.guid) + library_id +
                      Attribute("threadingModel", kThreadingModel) +
                      Attribute("description", library::kImagePageClass.name));
  text += Element("    ", "typelib",
                  library_id + Attribute("version", Version()) + Attribute("helpdir", "") +
                      Attribute("flags", "control"));
  text += "  </file>\n";
  for (const RemoteInterface& interface_row : kInterfaces)
    text += Element("  ", "comInterfaceExternalProxyStub",
                    Attribute("name", interface_row.identity.name) +
                        Attribute("iid", interface_row.identity.guid) +
                        Attribute("proxyStubClsid32", interface_row.proxy) + library_id);
  return text + "</assembly>\n";
}

int Run(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: manifest_generator FILE\n");
    return 2;
  }
  std::ofstream file(arguments[1], std::ios::binary);
  file << Manifest();
  file.close();
  if (file) return 0;
  std::fprintf(stderr, "manifest_generator: can't write %s\n", arguments[1]);
  return 1;
}

}  // namespace
}  // namespace marklet::activex

int main(int count, char** arguments) { return marklet::activex::Run(count, arguments); }

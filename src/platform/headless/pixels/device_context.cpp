#include "platform/headless/pixels/device_context.h"

#include <limits>
#include <new>

#include "base/rows.h"
#include "platform/gdi.h"
#include "platform/headless/recorder/hook.h"

namespace marklet {
namespace {

using headless::Operation;
using headless::Refused;
using Kind = GdiObjectHandle::Kind;

// Null when that was the last use of an object that its owner has deleted.
HGDIOBJ Release(HGDIOBJ object) {
  --object->selections;
  if (!object->deleted || object->selections > 0) return object;
  delete object;
  return nullptr;
}

// Two gigabytes at the most, as on every platform whose picture sizes are 32-bit numbers.
std::int64_t StrideOf(Long width, Long height, int bits_per_pixel) {
  const std::int64_t stride = DibStride(width, bits_per_pixel);
  return stride <= std::numeric_limits<Long>::max() / height ? stride : 0;
}

}  // namespace

namespace headless {

struct StockObjects {
  StockObjects() {
    for (HGDIOBJ object : All()) object->stock = true;
  }
  std::array<HGDIOBJ, 4> All() { return {&bitmap, &brush, &pen, &font}; }

  Bitmap bitmap;
  Brush brush{0xFFFFFF};
  Pen pen{1, 0x000000};
  Font font{LOGFONTW{.lfFaceName = u"System"}};
};

namespace {

std::shared_ptr<StockObjects> StockOfThread() {
  thread_local const auto stock = std::make_shared<StockObjects>();
  return stock;
}

}  // namespace
}  // namespace headless

DeviceContextHandle::DeviceContextHandle() : stock_(headless::StockOfThread()) {
  for (HGDIOBJ object : stock_->All()) Hold(object);
}

DeviceContextHandle::~DeviceContextHandle() {
  for (HGDIOBJ object : selected_) Release(object);
}

void DeviceContextHandle::Hold(HGDIOBJ object) {
  ++object->selections;
  selected_[static_cast<std::size_t>(object->kind)] = object;
  if (object->kind == Kind::kBitmap) surface = static_cast<headless::Bitmap*>(object)->surface;
  if (object->kind == Kind::kFont) font_ = static_cast<headless::Font*>(object);
}

HGDIOBJ DeviceContextHandle::Select(HGDIOBJ object) {
  const HGDIOBJ former = Selected(object->kind);
  if (former == object) return former;
  if (object->kind == Kind::kBitmap && object->selections > 0 && !object->stock) return nullptr;
  Hold(object);
  return Release(former);
}

COLORREF DeviceContextHandle::PenColour() const {
  return static_cast<headless::Pen*>(Selected(Kind::kPen))->colour;
}

HDC CreateCompatibleDC(HDC like) {
  if (Refused(Operation::kCreateCompatibleDC, like)) return nullptr;
  return headless::Made(new (std::nothrow) DeviceContextHandle);
}

bool DeleteDC(HDC dc) {
  if (Refused(Operation::kDeleteDC, dc)) return false;
  if (dc == nullptr) return false;
  delete dc;
  return true;
}

HBITMAP CreateDIBSection(HDC dc, Long width, Long height, int bits_per_pixel, std::uint8_t*& bits) {
  if (Refused(Operation::kCreateDIBSection, dc, width, height, bits_per_pixel)) return nullptr;
  if (width < 1 || height < 1 || (bits_per_pixel != 24 && bits_per_pixel != 32)) return nullptr;
  const std::int64_t stride = StrideOf(width, height, bits_per_pixel);
  if (stride == 0) return nullptr;
  auto bitmap = std::make_unique<headless::Bitmap>();
  const auto bytes = static_cast<std::size_t>(stride * height);
  bitmap->memory.reset(static_cast<std::uint8_t*>(std::calloc(bytes + headless::kSlack, 1)));
  if (bitmap->memory == nullptr) return nullptr;
  bits = bitmap->memory.get();
  bitmap->surface = {bits, width, height, stride, bits_per_pixel / 8};
  return headless::Made(bitmap.release());
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object) {
  if (Refused(Operation::kSelectObject, dc, object)) return nullptr;
  if (dc == nullptr || object == nullptr) return nullptr;
  return dc->Select(object);
}

bool DeleteObject(HGDIOBJ object) {
  if (Refused(Operation::kDeleteObject, object)) return false;
  if (object == nullptr) return false;
  if (object->stock) return true;
  object->deleted = true;
  if (object->selections == 0) delete object;
  return true;
}

bool PixelsOf(HDC dc, PixelView& view) {
  if (Refused(Operation::kPixelsOf, dc)) return false;
  if (dc == nullptr || dc->surface.bits == nullptr) return false;
  const headless::Surface& surface = dc->surface;
  view = {surface.bits, surface.width, surface.height, static_cast<Long>(surface.stride),
          surface.bytes_per_pixel * 8};
  return true;
}

void GdiFlush() {}

HBRUSH CreateSolidBrush(COLORREF colour) {
  if (Refused(Operation::kCreateSolidBrush, colour)) return nullptr;
  return headless::Made(new (std::nothrow) headless::Brush(colour));
}

HPEN CreatePen(Long width, COLORREF colour) {
  if (Refused(Operation::kCreatePen, width, colour)) return nullptr;
  return headless::Made(new (std::nothrow) headless::Pen(width, colour));
}

bool GetObjectA(HBITMAP bitmap, BITMAP& result) {
  if (Refused(Operation::kGetObjectA, bitmap)) return false;
  const headless::Bitmap* found = headless::AsBitmap(bitmap);
  if (found == nullptr) return false;
  result = {1, 1, 1};  // the bitmap of a new context
  if (!found->stock)
    result = {found->surface.width, found->surface.height, found->surface.bytes_per_pixel * 8};
  return true;
}

}  // namespace marklet

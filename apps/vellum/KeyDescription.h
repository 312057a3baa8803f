#ifndef VELLUM_APP_KEYDESCRIPTION_H
#define VELLUM_APP_KEYDESCRIPTION_H

#include <string>

namespace Vellum::KLV {
class Key;
} // namespace Vellum::KLV

namespace Vellum::App {

/// A short name for a key the KLV listing recognises: partition packs with their kind and
/// status ("header partition pack (closed, complete)"), the primer pack, index table
/// segments, other local sets, system items, essence elements, fill and the random index
/// pack. Any other key gives an empty string. The registry version byte is ignored.
std::string describeKey(const KLV::Key& key);

} // namespace Vellum::App

#endif

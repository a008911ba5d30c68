// The jointed puppet of the demo: a mannequin of bevelled, tapered shells on ball joints, one
// object for each limb, and the lamps that it wears, as a model of its own that hangs on the same
// limbs. In the proportions of the dance's skeleton and at the size that a puppet has at "Joint
// Scale" 10. Depends on the mesh builder; any thread.
#pragma once

#include <filesystem>
#include <string>

// The OBJ texts. The body has all fifteen limbs, the lamps those that wear some.
std::string PuppetBodyObj();
std::string PuppetLampsObj();

// Writes puppet.obj and puppet_lamps.obj into `folder`. False when that fails; `error` then names
// the file.
bool WritePuppet(const std::filesystem::path& folder, std::string& error);

// The message of each rejection reason, in each language, without file name and help line.
#pragma once

#include "localization/Localization.h"

namespace tessaly::Localization {

[[nodiscard]] const Entry& rejectionMessages(RejectionReason reason);

}  // namespace tessaly::Localization

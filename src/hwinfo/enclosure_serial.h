// The serial number of an enclosure in a caller's record, which may lack its NUL.
#pragma once

#include "foundation/text.h"
#include "zor_hwinfo_core.h"

class EnclosureSerial {
  public:
    explicit EnclosureSerial(const ZORHWEncInfo &enclosure) {
        CopyText(text_, sizeof text_, enclosure.EncSN);
    }

    const char *Text() const { return text_; }

  private:
    char text_[ZOR_ENC_SERIAL_SIZE];
};

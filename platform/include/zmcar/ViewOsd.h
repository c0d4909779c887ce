#pragma once

#include "zmcar/ViewUI.h"

namespace Oro::ZMCAR {

/** A transparent view over the main view, joined to it with JoinView. Windows 1 to 19 are bars, one at a
 * time; window 20 stacks above. */
class ViewOsd : public ViewUI {
public:
    ViewOsd();
    ~ViewOsd() override;

    using ViewUI::Init;
    /** Loads the resource file `resourcePath`; conditions as for ViewBase::Init. */
    virtual bool Init(std::string viewName, std::string resourcePath, std::string fontPath, int width,
                      int height);
};

} // namespace Oro::ZMCAR

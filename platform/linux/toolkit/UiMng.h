#pragma once

#include "platform/linux/toolkit/Motion.h"
#include "platform/linux/toolkit/Pages.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

/** What the application's item accessor works on. */
struct CUIWndMng::Impl {
    Impl(zm::Pages& owner, zm::Motion& mover) : pages(owner), motion(mover) {}

    zm::Pages& pages;
    zm::Motion& motion;
    std::unique_ptr<CUIAnalysis> analysis;
};

#pragma once

struct _tagList_Info;

namespace zm {

/** Is told what the user does to a scene. On the scene's thread, from inside Scene::press and its kin. */
class SceneListener {
public:
    virtual ~SceneListener() = default;
    /** State 0 press, 1 release, 4 held. Control 0: no item was hit. */
    virtual void itemClicked(int window, int control, int state) = 0;
    virtual void listScrolled(int window, int kind, _tagList_Info& info) = 0;
};

} // namespace zm

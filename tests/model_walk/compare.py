"""Whether the real unit did what the model did."""

from __future__ import annotations

import re
from typing import TYPE_CHECKING, Any, Dict, List

if TYPE_CHECKING:
    from unit import Unit

_PREFIX = re.compile(r"^6 _PLATEN_\[\w*\]-(.*)$", re.DOTALL)
_GROUP = re.compile(r"1-\d+-zelmar-disc")
_POLLS = re.compile(r"(OnHandleQueryResult\]  i=)\d+")
_MONITOR = re.compile(
    r"ParsePPSAttr, attr_name:|^DiscConnected:|^DiscExisting:|^status\.[bn]|PublishPlayID3|SubscribePlayID3|pps_decoder_"
)
_WORKER = re.compile(r"DiscQDB::(SetFinishFlag|QueryPlayList|GetResultFolderFile)\]")
_CAPTURE = "[DiscView::OnCaptureStateChanged]"
_POSTED = "[DiscView::OnChildPost] strChild=zmdisc_video_win"
_VIDEO = "DiscVideoStatusPPSModule::ParsePPSAttr"
_FIRST_OF_PAGES = 20000
#: objects that the application writes, and where the model keeps what is expected of them
_WRITTEN = {
    "zelmar/disc/control": "commands",
    "zelmar/videoservice/command": "captures",
    "zelmar/navigator/nowplaying": "published",
}


class Seen:
    """The same things as in the model's outcome, as the real unit did them."""

    def __init__(self, answer: Dict[str, Any]) -> None:
        logs: Dict[str, List[str]] = {"view_log": [], "monitor_log": [], "worker_log": []}
        logs.update(capture_log=[], video_log=[], posted_log=[])
        posted = 0  # lines of the view that are about the film's window, which comes when the video service likes
        for line in answer["log"]:
            found = _PREFIX.match(line)
            text = _POLLS.sub(r"\1N", _GROUP.sub("1-PID-zelmar-disc", found.group(1) if found else line))
            # Each thread's lines have an order of their own, and the video service answers when it likes.
            if _CAPTURE in text:
                logs["capture_log"].append(text)
            elif _VIDEO in text:
                logs["video_log"].append(text)
            elif _MONITOR.search(text):
                logs["monitor_log"].append(text)
            elif text == _POSTED:
                logs["posted_log"].append(text)
                posted = 2
            elif posted and not _WORKER.search(text):
                posted -= 1
                # The last of them makes it visible or not, which the screen tells as well.
                logs["posted_log"] += [text] if posted else []
            else:
                logs["worker_log" if _WORKER.search(text) else "view_log"].append(text)
        self.parts: Dict[str, Any] = logs
        written: Dict[str, List[str]] = {each: [] for each in _WRITTEN.values()}
        for change in answer["changes"]:
            if change["object"] in _WRITTEN:
                written[_WRITTEN[change["object"]]] += [_GROUP.sub("1-PID-zelmar-disc", each) for each in change["lines"]]
        self.parts.update(written)
        self.parts["requests"] = [(each["op"], each.get("app", ""), each.get("data", "")) for each in answer["requests"]]


def _application_items(view: Dict[str, Any]) -> Dict[str, Any]:
    """Without the items that belong to the pages, which follow others by themselves when these are drawn, and without
    the published value that an item's picture follows without the application."""
    windows = {
        window: {
            number: {name: of for name, of in item.items() if name != "value"}
            for number, item in content["items"].items()
            if int(number) < _FIRST_OF_PAGES
        }
        for window, content in view["windows"].items()
    }
    return {**view, "windows": windows}


def _differing(expected: Any, found: Any, path: str, differences: List[str]) -> None:
    if expected == found:
        return
    if isinstance(expected, dict) and isinstance(found, dict):
        for key in sorted({*expected, *found}):
            _differing(expected.get(key), found.get(key), f"{path}.{key}", differences)
    else:
        differences.append(f"{path}: expected {expected!r}, found {found!r}")


def differences(unit: "Unit", answer: Dict[str, Any]) -> List[str]:
    """One line for each thing that is not as the model has it; none if all is."""
    result: List[str] = []
    if answer["exit"] != 0:
        result.append(f"the command failed: {answer['err'].strip()}")
    if answer["screen"] is None:
        return [*result, "no application runs"]
    seen = Seen(answer)
    for part, found in seen.parts.items():
        expected = getattr(unit.out, part)
        if expected != found:
            at = next((i for i, pair in enumerate(zip(expected, found)) if pair[0] != pair[1]), min(len(expected), len(found)))
            result.append(f"{part}[{at}]: expected {expected[at:at + 3]!r}, found {found[at:at + 3]!r}")
    screen = answer["screen"]
    for name, pages in (("main", unit.main_pages), ("osd", unit.osd_pages)):
        expected_view, found_view = _application_items(pages.description()), _application_items(screen[name])
        _differing(expected_view, found_view, name, result)
    video = {**unit.video, "locked": unit.locked}
    _differing(video, {each: screen["video"][each] for each in video}, "video", result)
    for view, text in answer["stale"].items():
        result.append(f"the picture is not what the pages say, {view}: {text}")
    # The overlay's pad dims what lies behind it.
    dimmed = unit.osd_pages.visible and 20 in unit.osd_pages.shown
    if not dimmed and (answer["pixels"] > 0) != unit.film_seen():
        result.append(f"pixels of the film: {answer['pixels']}, expected {'some' if unit.film_seen() else 'none'}")
    if unit.locked and answer["pixels"]:
        result.append("a film is seen while the car drives")
    return result

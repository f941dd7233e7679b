#pragma once

/// The tools of the palette. The same numbers are the item types of records
/// and of project files.
enum ToolId {
    SelectTool = 0,
    EventTool = 1,
    ConditionTool = 2,
    ImageTool = 4,
    SequenceMarkerTool = 5,
    ConnectorTool = 8,
    ArrowTool = 16,
    FailedBarrierTool = 32,
    ImprovedBarrierTool = 64,
    NewBarrierTool = 128,
    StraightLineTool = 256,
    HandTool = 512,
    BarrierWorkedTool = 1024,
};

/// The type of a note without a picture; no tool makes it directly.
constexpr int NoteItemType = 3;

inline bool isLineTool(int tool)
{
    return tool == ConnectorTool || tool == ArrowTool || tool == StraightLineTool;
}

/// Tools that make no item.
inline bool isMetaTool(int tool)
{
    return tool == SelectTool || tool == HandTool;
}

/// What a drag from the palette carries: the tool id as one int in a QDataStream.
constexpr char ToolMimeType[] = "examiner/x-tool";

-- The project that Quick Start opens: a row of events from the start to the loss, on one
-- Tabloid page, clear of the header and the legend. It brings no paper, font or margins, so that
-- the user's own stay in force: no note lies across a page's edge on A4, Letter, Legal or A3 either.
PRAGMA encoding = 'UTF-8';
BEGIN;
CREATE TABLE items (guid TEXT,type INTEGER,role TEXT,x INTEGER,y INTEGER,width INTEGER,height INTEGER,text TEXT,font TEXT,image BLOB,parent TEXT);
CREATE TABLE connections (lineguid TEXT,startguid TEXT,endguid TEXT,startside INTEGER,endside INTEGER);
CREATE TABLE properties (guid TEXT,name TEXT,value TEXT);
CREATE TABLE formdata (id TEXT, value TEXT, image BLOB);

INSERT INTO properties VALUES ('project', 'dbVersion', '1');

-- Notes: guid, type, role, x, y, width, height, text, font, image, parent
INSERT INTO items VALUES
    ('{e539a78b-c8ef-4346-8b12-ae6ead581e57}', 3, 'Starting_Event', 20, 440, 120, 80,
     'What set events in motion?', '', NULL, NULL),
    ('{331241a9-82f1-4ec0-9ee5-7012853d452f}', 3, 'Event', 240, 440, 120, 80,
     'What happened next?', '', NULL, NULL),
    ('{877994af-ff2f-4504-98e0-0e8c64beb012}', 3, 'Event', 460, 440, 120, 80,
     'And then?', '', NULL, NULL),
    ('{9851e4d5-25f4-4a82-95af-4c654a13d22e}', 3, 'Loss_Of_Control', 680, 440, 120, 80,
     'Where was control lost?', '', NULL, NULL),
    ('{69701591-42ac-430c-9b90-1e7842d60baa}', 3, 'Event', 900, 440, 120, 80,
     'What followed?', '', NULL, NULL),
    ('{d5a262c8-4495-4e11-b7cf-5a6c53ce530e}', 3, 'Terminating_Event', 1120, 440, 120, 80,
     'What ended it?', '', NULL, NULL),
    ('{e5aefe75-5353-4361-85f6-ffa81b8e8d8d}', 3, 'Loss', 1340, 420, 160, 120,
     'What was lost or harmed?', '', NULL, NULL),
    ('{9e1b43fd-91b9-46a2-85da-31934fa1f5f5}', 3, 'Condition', 460, 260, 120, 80,
     'What made this possible?', '', NULL, NULL);

-- Connectors: the extents may be negative; the unused columns hold what a save writes
INSERT INTO items VALUES
    ('{eb9f5bf1-121f-44de-a10f-adcb339e15b1}', 8, '#000000', 140, 480, 100, 0, '0', '0', 0, NULL),
    ('{74a2a8ab-8add-449b-9d27-ffa333da7327}', 8, '#000000', 360, 480, 100, 0, '0', '0', 0, NULL),
    ('{12de1bfb-bbc4-4a50-9db8-60ca6378c977}', 8, '#000000', 580, 480, 100, 0, '0', '0', 0, NULL),
    ('{044d2cc9-6a18-4505-9936-bcaecd954f46}', 8, '#000000', 800, 480, 100, 0, '0', '0', 0, NULL),
    ('{6c558429-ba5d-4f63-943f-b835196f8d86}', 8, '#000000', 1020, 480, 100, 0, '0', '0', 0, NULL),
    ('{70b796dd-6564-4802-9a50-dff4c17323a5}', 8, '#000000', 1240, 480, 100, 0, '0', '0', 0, NULL),
    ('{921bcb24-4c8e-4782-bd3d-028ca885a5b2}', 8, '#000000', 520, 340, 0, 100, '0', '0', 0, NULL);

INSERT INTO connections VALUES
    ('{eb9f5bf1-121f-44de-a10f-adcb339e15b1}', '{e539a78b-c8ef-4346-8b12-ae6ead581e57}',
     '{331241a9-82f1-4ec0-9ee5-7012853d452f}', 3, 1),
    ('{74a2a8ab-8add-449b-9d27-ffa333da7327}', '{331241a9-82f1-4ec0-9ee5-7012853d452f}',
     '{877994af-ff2f-4504-98e0-0e8c64beb012}', 3, 1),
    ('{12de1bfb-bbc4-4a50-9db8-60ca6378c977}', '{877994af-ff2f-4504-98e0-0e8c64beb012}',
     '{9851e4d5-25f4-4a82-95af-4c654a13d22e}', 3, 1),
    ('{044d2cc9-6a18-4505-9936-bcaecd954f46}', '{9851e4d5-25f4-4a82-95af-4c654a13d22e}',
     '{69701591-42ac-430c-9b90-1e7842d60baa}', 3, 1),
    ('{6c558429-ba5d-4f63-943f-b835196f8d86}', '{69701591-42ac-430c-9b90-1e7842d60baa}',
     '{d5a262c8-4495-4e11-b7cf-5a6c53ce530e}', 3, 1),
    ('{70b796dd-6564-4802-9a50-dff4c17323a5}', '{d5a262c8-4495-4e11-b7cf-5a6c53ce530e}',
     '{e5aefe75-5353-4361-85f6-ffa81b8e8d8d}', 3, 1),
    ('{921bcb24-4c8e-4782-bd3d-028ca885a5b2}', '{9e1b43fd-91b9-46a2-85da-31934fa1f5f5}',
     '{877994af-ff2f-4504-98e0-0e8c64beb012}', 4, 2);

-- What every note and line has
INSERT INTO properties SELECT guid, 'textAlignment', 'AlignHCenter AlignVCenter' FROM items WHERE type = 3;
INSERT INTO properties SELECT guid, 'arrowStyle', '0' FROM items WHERE type = 8;
INSERT INTO properties SELECT guid, 'lineStyle', '1' FROM items WHERE type = 8;
INSERT INTO properties SELECT guid, 'borderLineWidth', '2' FROM items WHERE type = 8;

-- The form's fields that follow the loss of control and the loss
INSERT INTO properties SELECT guid, 'sibling', 'lossOfControl' FROM items WHERE role = 'Loss_Of_Control';
INSERT INTO properties SELECT guid, 'sibling', 'loss' FROM items WHERE role = 'Loss';
COMMIT;

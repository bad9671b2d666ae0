
-- Lines may end in CR LF.
UPDATE temp.load_lines SET l = rtrim(l, char(13)) WHERE l GLOB '*' || char(13);
